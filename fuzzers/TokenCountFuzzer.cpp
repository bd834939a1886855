// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TokenCount.h"

#include <Sorvane/CleanupFailure.h>

#include <cstdint>

// What the tokeniser writes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    try {
        Sorvane::tokenCount({ reinterpret_cast<const char*>(data), size });
    } catch (const Sorvane::CleanupFailure&) { // refused, as it should be
    }
    return 0;
}
