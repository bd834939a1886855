// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/KernelSet.h"

#include <utility>

namespace MLProgram {

template <typename Vector> struct PanelReader {
    static typename Vector::Register read(const float* from) { return Vector::load(from); }
    static typename Vector::Register read(const PlatformSupport::Float16* from) { return Vector::widen(from); }
};

// A tile of `rows` rows and two registers of columns. All sums stay in registers. A sum of few rows would wait for
// itself at every step of the depth, so then the steps take turns on several chains of sums, added up at the end.
template <typename Vector, typename Weight, int rows> void multiplyTile(const Tile& tile)
{
    using Register = typename Vector::Register;
    constexpr int chains = rows <= 2 ? 4 : (rows <= 4 ? 2 : 1);
    constexpr int64_t panelWidth = 2 * Vector::width;

    // Every loop over rows is unrolled, or else the compiler keeps the sums in memory.
    Register sums[chains][rows][2];
    const float* start = tile.accumulate ? tile.c : tile.start;
    const int64_t startStride = tile.accumulate ? tile.cStride : 0;
#pragma GCC unroll 16
    for (int row = 0; row < rows; ++row) {
        sums[0][row][0] = start == nullptr ? Vector::zero() : Vector::load(start + row * startStride);
        sums[0][row][1] = start == nullptr ? Vector::zero() : Vector::load(start + row * startStride + Vector::width);
#pragma GCC unroll 4
        for (int chain = 1; chain < chains; ++chain) {
            sums[chain][row][0] = Vector::zero();
            sums[chain][row][1] = Vector::zero();
        }
    }

    const float* a = tile.a;
    const auto* b = static_cast<const Weight*>(tile.b);
    const auto step = [&](Register(&chain)[rows][2]) {
        const Register left = PanelReader<Vector>::read(b);
        const Register right = PanelReader<Vector>::read(b + Vector::width);
#pragma GCC unroll 16
        for (int row = 0; row < rows; ++row) {
            const Register value = Vector::all(a[row]);
            chain[row][0] = Vector::multiplyAdd(value, left, chain[row][0]);
            chain[row][1] = Vector::multiplyAdd(value, right, chain[row][1]);
        }
        a += rows;
        b += panelWidth;
    };

    int64_t k = 0;
    for (; k + chains <= tile.depth; k += chains) {
#pragma GCC unroll 4
        for (int chain = 0; chain < chains; ++chain)
            step(sums[chain]);
    }
    for (; k < tile.depth; ++k)
        step(sums[0]);

#pragma GCC unroll 16
    for (int row = 0; row < rows; ++row) {
#pragma GCC unroll 2
        for (int half = 0; half < 2; ++half) {
            Register sum = sums[0][row][half];
#pragma GCC unroll 4
            for (int chain = 1; chain < chains; ++chain)
                sum = sum + sums[chain][row][half];
            Vector::store(tile.c + row * tile.cStride + half * Vector::width, sum);
        }
    }
}

template <typename Vector, typename Weight, int... indices>
void multiplyTileOf(const Tile& tile, std::integer_sequence<int, indices...>)
{
    static constexpr void (*byRows[])(const Tile&) = { &multiplyTile<Vector, Weight, indices + 1>... };
    byRows[tile.rows - 1](tile);
}

template <typename Vector, typename Weight> void multiplyTileOf(const Tile& tile)
{
    multiplyTileOf<Vector, Weight>(tile, std::make_integer_sequence<int, Vector::tileRows> {});
}

template <typename Vector> void widenHalves(const PlatformSupport::Float16* from, float* to, int64_t count)
{
    int64_t i = 0;
    for (; i + Vector::width <= count; i += Vector::width)
        Vector::store(to + i, Vector::widen(from + i));
    for (; i < count; ++i)
        to[i] = PlatformSupport::toFloat(from[i]);
}

} // namespace MLProgram
