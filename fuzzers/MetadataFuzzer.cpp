// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Description/Metadata.h"

#include <MLProgram/MLModelError.h>

#include <cstddef>
#include <cstdint>

using namespace MLProgram;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    try {
        readMetadata({ reinterpret_cast<const char*>(data), size });
    } catch (const MLModelError&) { // refused, as it should be
    }
    return 0;
}
