// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Constant.h"

#include <cstdint>
#include <string_view>

namespace MLProgram {

// Where values come from that the program text only refers to: BLOBFILE(path = ..., offset = ...).
class WeightSource {
public:
    virtual ~WeightSource() = default;

    // `path` and `offset` as they stand in the text; every one is foreign. The type is not string.
    // Errors: MLModelError (invalidProgram) when no such value is stored there, (io) when the file is missing.
    virtual Constant read(std::string_view path, uint64_t offset, ScalarType type, const Shape& shape) = 0;
};

} // namespace MLProgram
