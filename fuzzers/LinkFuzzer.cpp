// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/XetPointer.h>
#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

using namespace ModelStore;

// The first line is the address that was asked for, the rest a Link header.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const size_t end = std::min(text.find('\n'), text.size());
    const std::string link(text.substr(std::min(end + 1, text.size())));
    const auto pointer = XetPointer::from(std::string(64, 'a'), link, text.substr(0, end));
    if (pointer)
        PlatformSupport::precondition(pointer->refreshURL.starts_with("https://")
                || pointer->refreshURL.find("/xet-read-token/") != std::string::npos,
            "an address comes from nowhere");
    return 0;
}
