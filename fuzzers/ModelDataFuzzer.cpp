// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Description/ModelData.h"

#include <MLProgram/MLModelError.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

using namespace MLProgram;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::vector<uint8_t> file(data, data + size); // reading beyond its end is seen
    try {
        readModelData(std::as_bytes(std::span(file)));
    } catch (const MLModelError&) { // refused, as it should be
    }
    return 0;
}
