// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/PackedMatrix.h"

#include "Kernels/Transpose.h"
#include "Kernels/Workers.h"

#include <algorithm>
#include <vector>

namespace MLProgram {

namespace {

using PlatformSupport::Float16;

// Smaller weights are packed sooner than a second thread comes.
constexpr size_t bytesWorthThreads = size_t { 2 } << 20;

int64_t depthOf(const WeightLayout& layout)
{
    int64_t depth = 1;
    for (const auto& dimension : layout.depth)
        depth *= dimension.count;
    return depth;
}

// The outer dimensions of the depth as the offsets of their runs; the innermost is a run.
std::vector<int64_t> runOffsets(const WeightLayout& layout)
{
    std::vector<int64_t> offsets { 0 };
    for (size_t i = 0; i + 1 < layout.depth.size(); ++i) {
        std::vector<int64_t> inner;
        for (const int64_t offset : offsets) {
            for (int64_t k = 0; k < layout.depth[i].count; ++k)
                inner.push_back(offset + k * layout.depth[i].stride);
        }
        offsets = std::move(inner);
    }
    return offsets;
}

// A run of one panel: to[k][column] = from[k · run.stride + column · columns.stride].
template <typename Value>
void packRun(const Value* from, WeightLayout::Dimension run, WeightLayout::Dimension columns, Value* to, int64_t width)
{
    if (run.stride == 1)
        return transpose(from, columns.stride, columns.count, run.count, to, width);
    for (int64_t k = 0; k < run.count; ++k) {
        for (int64_t column = 0; column < columns.count; ++column)
            to[k * width + column] = from[k * run.stride + column * columns.stride];
    }
}

} // namespace

PackedMatrix::PackedMatrix(const Float16* weights, const WeightLayout& layout, int64_t panelWidth)
    : depth_(depthOf(layout))
    , columns_(layout.columns.count)
    , panelWidth_(panelWidth)
    , isHalf_(true)
{
    pack(weights, layout);
}

PackedMatrix::PackedMatrix(const float* weights, const WeightLayout& layout, int64_t panelWidth)
    : depth_(depthOf(layout))
    , columns_(layout.columns.count)
    , panelWidth_(panelWidth)
{
    pack(weights, layout);
}

template <typename Value> void PackedMatrix::pack(const Value* weights, const WeightLayout& layout)
{
    const size_t size = static_cast<size_t>(panelCount() * panelWidth_ * depth_) * sizeof(Value);
    panels_ = Pages(size);
    auto* panels = reinterpret_cast<Value*>(panels_.data());
    const WeightLayout::Dimension run = layout.depth.empty() ? WeightLayout::Dimension {} : layout.depth.back();
    const std::vector<int64_t> runs = runOffsets(layout);

    forEachTask(panelCount(), size > bytesWorthThreads, [&](int64_t panel, int) {
        const int64_t first = panel * panelWidth_;
        const WeightLayout::Dimension columns { std::min(panelWidth_, columns_ - first), layout.columns.stride };
        Value* to = panels + offset(panel, 0);
        for (const int64_t start : runs) {
            packRun(weights + start + first * columns.stride, run, columns, to, panelWidth_);
            to += run.count * panelWidth_;
        }
    });
}

size_t PackedMatrix::offset(int64_t panel, int64_t firstRow) const noexcept
{
    return static_cast<size_t>((panel * depth_ + firstRow) * panelWidth_);
}

const Float16* PackedMatrix::halfPanel(int64_t panel, int64_t firstRow) const noexcept
{
    return isHalf_ ? reinterpret_cast<const Float16*>(panels_.data()) + offset(panel, firstRow) : nullptr;
}

const float* PackedMatrix::singlePanel(int64_t panel, int64_t firstRow) const noexcept
{
    return isHalf_ ? nullptr : reinterpret_cast<const float*>(panels_.data()) + offset(panel, firstRow);
}

} // namespace MLProgram
