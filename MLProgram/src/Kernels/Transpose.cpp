// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/Transpose.h"

#include <algorithm>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace MLProgram {

namespace {

using PlatformSupport::Float16;

// Side of the square that is turned in registers.
template <typename Value> constexpr int64_t side = 16 / static_cast<int64_t>(sizeof(Value));

#if defined(__SSE2__)
void turnSquare(const float* const* from, int64_t column, float* to, int64_t toStride)
{
    __m128 a = _mm_loadu_ps(from[0] + column);
    __m128 b = _mm_loadu_ps(from[1] + column);
    __m128 c = _mm_loadu_ps(from[2] + column);
    __m128 d = _mm_loadu_ps(from[3] + column);
    _MM_TRANSPOSE4_PS(a, b, c, d);
    _mm_storeu_ps(to, a);
    _mm_storeu_ps(to + toStride, b);
    _mm_storeu_ps(to + 2 * toStride, c);
    _mm_storeu_ps(to + 3 * toStride, d);
}

// Three rounds of interleaving row i with row i + 4 turn a square of eight.
void turnSquare(const Float16* const* from, int64_t column, Float16* to, int64_t toStride)
{
    __m128i rows[8];
    for (int i = 0; i < 8; ++i)
        rows[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from[i] + column));
    for (int round = 0; round < 3; ++round) {
        __m128i mixed[8];
        for (int i = 0; i < 4; ++i) {
            mixed[2 * i] = _mm_unpacklo_epi16(rows[i], rows[i + 4]);
            mixed[2 * i + 1] = _mm_unpackhi_epi16(rows[i], rows[i + 4]);
        }
        std::copy_n(mixed, 8, rows);
    }
    for (int i = 0; i < 8; ++i)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i * toStride), rows[i]);
}
#else
template <typename Value> void turnSquare(const Value* const* from, int64_t column, Value* to, int64_t toStride)
{
    for (int64_t row = 0; row < side<Value>; ++row) {
        for (int64_t i = 0; i < side<Value>; ++i)
            to[i * toStride + row] = from[row][column + i];
    }
}
#endif

// A band of rows, as many as the square has, from the first column on.
template <typename Value>
void turnBand(const Value* const* from, int64_t first, int64_t columns, Value* to, int64_t toStride)
{
    int64_t column = 0;
    for (; column + side<Value> <= columns; column += side<Value>)
        turnSquare(from, first + column, to + column * toStride, toStride);
    for (; column < columns; ++column) {
        for (int64_t row = 0; row < side<Value>; ++row)
            to[column * toStride + row] = from[row][first + column];
    }
}

template <typename Value> void turnRow(const Value* from, int64_t columns, Value* to, int64_t toStride)
{
    for (int64_t column = 0; column < columns; ++column)
        to[column * toStride] = from == nullptr ? Value {} : from[column];
}

template <typename Value> bool areThere(const Value* const* rows, int64_t count)
{
    return std::none_of(rows, rows + count, [](const Value* row) { return row == nullptr; });
}

template <typename Value>
void turnRows(const Value* const* from, int64_t rows, int64_t firstColumn, int64_t columns, Value* to, int64_t toStride)
{
    for (int64_t row = 0; row < rows;) {
        // Rows that are left over at the end are turned once more with the last of those before them.
        const int64_t first = std::min(row, rows - side<Value>);
        if (first >= 0 && areThere(from + first, side<Value>)) {
            turnBand(from + first, firstColumn, columns, to + first, toStride);
            row = first + side<Value>;
        } else {
            turnRow(from[row] == nullptr ? nullptr : from[row] + firstColumn, columns, to + row, toStride);
            ++row;
        }
    }
}

template <typename Value>
void turn(const Value* from, int64_t fromStride, int64_t rows, int64_t columns, Value* to, int64_t toStride)
{
    // Bands of columns short enough that the squares' lines of `to` are still cached for the next rows.
    constexpr int64_t bandColumns = 256;
    for (int64_t column = 0; column < columns; column += bandColumns) {
        const int64_t width = std::min(bandColumns, columns - column);
        for (int64_t row = 0; row < rows; row += side<Value>) {
            const Value* starts[side<Value>];
            const int64_t height = std::min(side<Value>, rows - row);
            for (int64_t i = 0; i < height; ++i)
                starts[i] = from + (row + i) * fromStride + column;
            turnRows(starts, height, 0, width, to + column * toStride + row, toStride);
        }
    }
}

} // namespace

void transpose(const float* from, int64_t fromStride, int64_t rows, int64_t columns, float* to, int64_t toStride)
{
    turn(from, fromStride, rows, columns, to, toStride);
}

void transpose(const Float16* from, int64_t fromStride, int64_t rows, int64_t columns, Float16* to, int64_t toStride)
{
    turn(from, fromStride, rows, columns, to, toStride);
}

// In blocks of columns, so that what one band writes is still cached when the next is written beside it.
void transposeRows(const float* const* from, int64_t rows, int64_t columns, float* to, int64_t toStride)
{
    constexpr int64_t blockColumns = 128;
    for (int64_t column = 0; column < columns; column += blockColumns)
        turnRows(from, rows, column, std::min(blockColumns, columns - column), to + column * toStride, toStride);
}

} // namespace MLProgram
