// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "StoredFields.h"
#include "TranscriptCoding.h"

#include <PlatformSupport/Precondition.h>

#include <cstddef>
#include <cstdint>

using namespace Sorvane;

// What can be read can be written, and is then read as the same.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    try {
        const auto entry = TranscriptCoding::decoded({ reinterpret_cast<const char*>(data), size });
        const auto again = TranscriptCoding::decoded(TranscriptCoding::encoded(entry));
        PlatformSupport::precondition(again == entry, "a transcript changed on its way through its file");
    } catch (const StoredFormatError&) { // refused, as it should be
    }
    return 0;
}
