// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/PackedMatrix.h"

#include "Kernels/Transpose.h"
#include "Kernels/Workers.h"

#include <MLProgram/MLModelError.h>

#include <sys/mman.h>

#include <algorithm>
#include <vector>

namespace MLProgram {

namespace {

using PlatformSupport::Float16;

// Large weights are worth large pages: fewer faults while packing, fewer address translations while multiplying.
constexpr size_t largePage = size_t { 2 } << 20;

std::byte* mapPages(size_t size)
{
    void* pages = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED)
        throw MLModelError(MLModelError::Case::outOfMemory, "There is not enough memory for the model's weights.");
    if (size >= largePage)
        madvise(pages, size, MADV_HUGEPAGE);
    return static_cast<std::byte*>(pages);
}

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

void PackedMatrix::Unmap::operator()(std::byte* pages) const noexcept
{
    munmap(pages, size);
}

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
    const size_t size = std::max<size_t>(1, static_cast<size_t>(panelCount() * panelWidth_ * depth_) * sizeof(Value));
    panels_ = { mapPages(size), Unmap { size } };
    auto* panels = reinterpret_cast<Value*>(panels_.get());
    const WeightLayout::Dimension run = layout.depth.empty() ? WeightLayout::Dimension {} : layout.depth.back();
    const std::vector<int64_t> runs = runOffsets(layout);

    forEachTask(panelCount(), size > largePage, [&](int64_t panel, int) {
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
    return isHalf_ ? reinterpret_cast<const Float16*>(panels_.get()) + offset(panel, firstRow) : nullptr;
}

const float* PackedMatrix::singlePanel(int64_t panel, int64_t firstRow) const noexcept
{
    return isHalf_ ? nullptr : reinterpret_cast<const float*>(panels_.get()) + offset(panel, firstRow);
}

} // namespace MLProgram
