// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <Sorvane/TranscriptCleanup.h>

#include <algorithm>
#include <cstdint>

using PlatformSupport::precondition;

// What the generator writes for a transcript: the input up to its first zero byte is the transcript.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto original = input.substr(0, input.find('\0'));
    const auto output = input.substr(std::min(original.size() + 1, size));
    const auto text = Sorvane::TranscriptCleanup::validate(output, original);
    if (!text)
        return 0;
    precondition(!text->empty() && output.find(*text) != std::string_view::npos, "the text is made up");
    precondition(text->find("<|") == std::string::npos, "a control token went through");
    precondition(text->size() <= std::max<size_t>(256, 2 * original.size()), "the text is too long");
    return 0;
}
