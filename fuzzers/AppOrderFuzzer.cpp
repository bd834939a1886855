// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "AppOrder.h"
#include "StoredFields.h"

#include <cstddef>
#include <cstdint>

using namespace Sorvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    try {
        decodedAppOrder({ reinterpret_cast<const char*>(data), size });
    } catch (const StoredFormatError&) { // refused, as it should be
    }
    return 0;
}
