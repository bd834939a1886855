// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Operations/Operation.h"

#include <array>
#include <cstdint>

namespace MLProgram {

// How a window slides along one dimension.
struct Window {
    int64_t input = 1; // elements of the dimension
    int64_t size = 1; // elements of the window
    int64_t stride = 1;
    int64_t dilation = 1; // from one element of the window to the next
    int64_t before = 0, after = 0; // padding
    int64_t output = 1; // positions of the window

    // From the window's first element to its last, both included.
    int64_t extent() const noexcept { return (size - 1) * dilation + 1; }

    // The input element under element `k` of the window at position `o`; outside of the input when that is padding.
    int64_t under(int64_t o, int64_t k) const noexcept { return o * stride - before + k * dilation; }

    // Elements [first, last) of the window at position `o` lie on the input, the others on padding.
    struct Elements {
        int64_t first, last;
    };
    Elements covering(int64_t o) const noexcept;

    // For the transposed convolution, where every input element spreads a window over the output: the input element
    // whose window's element `k` meets the output `o`; -1 when there is none.
    int64_t spreadingTo(int64_t o, int64_t k) const noexcept
    {
        const int64_t at = o + before - k * dilation;
        return at >= 0 && at % stride == 0 && at / stride < input ? at / stride : -1;
    }
};

// Up to three spatial dimensions; those that a tensor lacks stand in front and have one element.
constexpr size_t mostSpatialDimensions = 3;
using Windows = std::array<Window, mostSpatialDimensions>;

enum class Direction { convolution, transposedConvolution, floorPooling, ceilingPooling };

// The windows of a convolution or pooling of a tensor [N, C, D..] by kernels [K..], as the operands `strides`,
// `dilations`, `pad_type` and `pad` tell. All parameters are checked.
Windows windowsOf(const Operands& operands, const Shape& tensor, std::span<const int64_t> kernel, Direction direction);

// Visits every position of the windows in row-major order.
template <typename Visit> void forEachPosition(const Windows& windows, Visit&& visit)
{
    for (int64_t depth = 0; depth < windows[0].output; ++depth)
        for (int64_t row = 0; row < windows[1].output; ++row)
            for (int64_t column = 0; column < windows[2].output; ++column)
                visit(std::array<int64_t, mostSpatialDimensions> { depth, row, column });
}

// Visits each element of the windows at one position that lies on the input, in row-major order. Hands over where it
// stands in the window, and where in the input.
template <typename Visit>
void forEachCovered(const Windows& windows, const std::array<int64_t, mostSpatialDimensions>& position, Visit&& visit)
{
    const auto& [depths, rows, columns] = windows;
    const Window::Elements onDepths = depths.covering(position[0]);
    const Window::Elements onRows = rows.covering(position[1]);
    const Window::Elements onColumns = columns.covering(position[2]);
    for (int64_t i = onDepths.first; i < onDepths.last; ++i)
        for (int64_t j = onRows.first; j < onRows.last; ++j)
            for (int64_t k = onColumns.first; k < onColumns.last; ++k) {
                const int64_t row = depths.under(position[0], i) * rows.input + rows.under(position[1], j);
                visit((i * rows.size + j) * columns.size + k, row * columns.input + columns.under(position[2], k));
            }
}

// The same for the transposed convolution: each element of the windows with which some input element meets the output
// at `position`.
template <typename Visit>
void forEachSpreading(const Windows& windows, const std::array<int64_t, mostSpatialDimensions>& position, Visit&& visit)
{
    const auto& [depths, rows, columns] = windows;
    for (int64_t i = 0; i < depths.size; ++i) {
        const int64_t depth = depths.spreadingTo(position[0], i);
        for (int64_t j = 0; depth >= 0 && j < rows.size; ++j) {
            const int64_t row = rows.spreadingTo(position[1], j);
            for (int64_t k = 0; row >= 0 && k < columns.size; ++k) {
                const int64_t column = columns.spreadingTo(position[2], k);
                if (column >= 0)
                    visit((i * rows.size + j) * columns.size + k, (depth * rows.input + row) * columns.input + column);
            }
        }
    }
}

} // namespace MLProgram
