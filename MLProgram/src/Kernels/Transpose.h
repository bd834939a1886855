// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Float16.h>

#include <cstdint>

namespace MLProgram {

// to[column · toStride + row] = from[row · fromStride + column] for `rows` rows of `columns` values.
void transpose(const float* from, int64_t fromStride, int64_t rows, int64_t columns, float* to, int64_t toStride);
void transpose(const PlatformSupport::Float16* from, int64_t fromStride, int64_t rows, int64_t columns,
    PlatformSupport::Float16* to, int64_t toStride);

// The same for rows that lie anywhere; a null row is a row of zeros.
void transposeRows(const float* const* from, int64_t rows, int64_t columns, float* to, int64_t toStride);

} // namespace MLProgram
