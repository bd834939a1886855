// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Weights/WeightFile.h"

#include <MLProgram/MLModelError.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

using namespace MLProgram;

// What the program asks for stands in front of the file: u64 offset, u8 element type, u8 elements.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    constexpr size_t requestSize = 10;
    if (size < requestSize)
        return 0;
    uint64_t offset = 0;
    std::memcpy(&offset, data, sizeof(offset));
    const auto type = static_cast<ScalarType>(data[8] % (static_cast<uint8_t>(ScalarType::uint64) + 1));
    if (type == ScalarType::string)
        return 0;
    // A copy of its own, so that reading beyond its end is seen.
    const std::vector<uint8_t> file(data + requestSize, data + size);
    try {
        const WeightFile weights("weight.bin", std::as_bytes(std::span(file)), nullptr);
        static_cast<void>(weights.read(offset, type, { data[9] }).widened());
    } catch (const MLModelError&) { // refused, as it should be
    }
    return 0;
}
