// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/Product.h"

#include "Kernels/Workers.h"

#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <utility>

namespace MLProgram {

namespace {

using PlatformSupport::Float16;

// Rows multiplied at a time; their packed values are read again for every panel and should stay in the caches.
constexpr int64_t rowsPerBlock = 14 * 14;

// Steps of the depth that are widened at a time: 128 KB of a panel, for the second-level cache. Shorter blocks would
// load and store the results more often.
constexpr int64_t widenedDepth = 1024;

// Up to this many tiles, widening in registers for each tile is cheaper than widening into memory once.
constexpr int64_t tilesWidenedInRegisters = 3;

// Columns whose epilogue is run at one go.
constexpr int64_t panelsPerTask = 8;

void prefetch(std::span<const Float16> weights)
{
    constexpr size_t weightsPerLine = 64 / sizeof(Float16);
    for (size_t i = 0; i < weights.size(); i += weightsPerLine)
        __builtin_prefetch(&weights[i], 0, 2);
}

int64_t panelsPerTaskOf(int64_t panels)
{
    const int threads = Workers::shared().count();
    return threads == 1 ? panelsPerTask : std::clamp<int64_t>(panels / (2 * threads), 1, panelsPerTask);
}

// Below this many multiplications a second thread costs more than it brings.
constexpr int64_t multiplicationsWorthThreads = 1 << 17;

// Rows cut into tiles of nearly equal height.
struct Tiles {
    int64_t rows;
    int64_t count;

    Tiles(int64_t rowCount, int64_t tileRows)
        : rows(rowCount)
        , count((rowCount + tileRows - 1) / tileRows)
    {
    }
    int64_t first(int64_t tile) const { return rows * tile / count; }
    int64_t height(int64_t tile) const { return first(tile + 1) - first(tile); }
};

// One block of rows, from the packed left-hand values to finished results, of which the first goes to `result`.
class RowBlock {
public:
    RowBlock(const Product& product, const KernelSet& kernels, int64_t firstRow, int64_t rows, float* result)
        : product_(product)
        , kernels_(kernels)
        , right_(*product.right)
        , firstRow_(firstRow)
        , result_(result)
        , tiles_(rows, kernels.tileRows)
        , panelsPerTask_(panelsPerTaskOf(right_.panelCount()))
    {
    }

    int64_t tileCount() const { return tiles_.count; }
    int64_t taskCount() const { return (right_.panelCount() + panelsPerTask_ - 1) / panelsPerTask_; }

    void packTile(int64_t tile) const
    {
        product_.left->packTile(firstRow_ + tiles_.first(tile), tiles_.height(tile), packed(tile, 0));
    }

    void multiplyPanels(int64_t task) const
    {
        const int64_t first = task * panelsPerTask_;
        const int64_t last = std::min(first + panelsPerTask_, right_.panelCount());
        for (int64_t panel = first; panel < last; ++panel)
            multiplyPanel(panel);
        if (product_.epilogue.program != nullptr)
            runEpilogue(first * right_.panelWidth(), std::min(last * right_.panelWidth(), right_.columns()));
    }

private:
    float* packed(int64_t tile, int64_t k) const
    {
        return product_.workspace + tiles_.first(tile) * right_.depth() + k * tiles_.height(tile);
    }

    void multiplyPanel(int64_t panel) const
    {
        if (const float* values = right_.singlePanel(panel))
            return multiplyTiles(panel, kernels_.tile, values, 0, right_.depth());
        if (tiles_.count <= tilesWidenedInRegisters)
            return multiplyTiles(panel, kernels_.tileOfHalves, right_.halfPanel(panel), 0, right_.depth());
        alignas(64) float widened[widenedDepth * maximumPanelWidth];
        for (int64_t k = 0; k < right_.depth(); k += widenedDepth) {
            const int64_t depth = std::min(widenedDepth, right_.depth() - k);
            kernels_.widen(right_.halfPanel(panel, k), widened, depth * right_.panelWidth());
            multiplyTiles(panel, kernels_.tile, widened, k, depth, weightsAfter(panel, k + depth));
        }
    }

    // The weights to be widened next; none at the end.
    std::span<const Float16> weightsAfter(int64_t panel, int64_t k) const
    {
        if (k == right_.depth()) {
            ++panel;
            k = 0;
        }
        if (panel == right_.panelCount())
            return {};
        const int64_t depth = std::min(widenedDepth, right_.depth() - k);
        return { right_.halfPanel(panel, k), static_cast<size_t>(depth * right_.panelWidth()) };
    }

    // While the tiles are multiplied, the weights that come next are on their way into the cache.
    void multiplyTiles(int64_t panel, void (*kernel)(const Tile&), const void* b, int64_t k, int64_t depth,
        std::span<const Float16> next = {}) const
    {
        const size_t share = next.size() / static_cast<size_t>(tiles_.count);
        const int64_t column = panel * right_.panelWidth();
        for (int64_t tile = 0; tile < tiles_.count; ++tile) {
            float* result = result_ + tiles_.first(tile) * product_.resultStride + column;
            const float* start = product_.bias == nullptr ? nullptr : product_.bias + column;
            const Tile work { packed(tile, k), b, result, start, depth, tiles_.height(tile), product_.resultStride,
                k > 0 };
            if (column + right_.panelWidth() <= right_.columns())
                kernel(work);
            else
                multiplyAtEdge(kernel, work, right_.columns() - column);
            prefetch(next.subspan(static_cast<size_t>(tile) * share, share));
        }
    }

    // The last panel may be wider than what is left of the result.
    void multiplyAtEdge(void (*kernel)(const Tile&), Tile work, int64_t columns) const
    {
        alignas(64) float whole[maximumTileRows * maximumPanelWidth];
        alignas(64) float start[maximumPanelWidth] = {};
        if (work.start != nullptr)
            work.start = std::copy_n(work.start, columns, start) - columns;
        float* const result = work.c;
        work.c = whole;
        const int64_t stride = std::exchange(work.cStride, right_.panelWidth());
        if (work.accumulate) {
            for (int64_t row = 0; row < work.rows; ++row) {
                std::copy_n(result + row * stride, columns, whole + row * work.cStride);
                std::fill(whole + row * work.cStride + columns, whole + (row + 1) * work.cStride, 0.0f);
            }
        }
        kernel(work);
        for (int64_t row = 0; row < work.rows; ++row)
            std::copy_n(whole + row * work.cStride, columns, result + row * stride);
    }

    void runEpilogue(int64_t firstColumn, int64_t lastColumn) const
    {
        const Epilogue& epilogue = product_.epilogue;
        boost::container::static_vector<RowInput, maximumSlots> inputs(1 + epilogue.inputs.size());
        for (int64_t row = 0; row < tiles_.rows; ++row) {
            float* values = result_ + row * product_.resultStride + firstColumn;
            inputs[0] = { values, ElementType::real, 1 };
            for (size_t i = 0; i < epilogue.inputs.size(); ++i) {
                const EpilogueInput& input = epilogue.inputs[i];
                const int64_t offset = (firstRow_ + row) * input.rowStride + firstColumn * input.columnStride;
                const auto* data = static_cast<const std::byte*>(input.data);
                const auto size = static_cast<int64_t>(sizeOf(input.element));
                inputs[i + 1] = { data + offset * size, input.element, input.columnStride };
            }
            runRow(*epilogue.program, inputs, { values, 1 }, lastColumn - firstColumn, kernels_);
        }
    }

    const Product& product_;
    const KernelSet& kernels_;
    const PackedMatrix& right_;
    int64_t firstRow_;
    float* result_;
    Tiles tiles_;
    int64_t panelsPerTask_;
};

void check(const Product& product, const KernelSet& kernels)
{
    PlatformSupport::precondition(
        product.left->depth() == product.right->depth(), "a product's sides have different depths");
    PlatformSupport::precondition(
        product.right->panelWidth() == kernels.panelWidth, "weights were packed for other kernels");
}

} // namespace

int64_t productWorkspace(int64_t rows, int64_t depth) noexcept
{
    return std::min(rows, rowsPerBlock) * depth;
}

void multiply(const Product& product, const KernelSet& kernels)
{
    check(product, kernels);
    const int64_t rows = product.left->rows();
    const int64_t multiplications = rows * product.right->depth() * product.right->columns();
    const bool isWorthThreads = multiplications > multiplicationsWorthThreads;
    for (int64_t firstRow = 0; firstRow < rows; firstRow += rowsPerBlock) {
        const RowBlock block(product, kernels, firstRow, std::min(rowsPerBlock, rows - firstRow),
            product.result + firstRow * product.resultStride);
        forEachTask(block.tileCount(), isWorthThreads, [&](int64_t tile, int) { block.packTile(tile); });
        forEachTask(block.taskCount(), isWorthThreads, [&](int64_t task, int) { block.multiplyPanels(task); });
    }
}

void multiplyRows(const Product& product, int64_t firstRow, int64_t rows, const KernelSet& kernels)
{
    check(product, kernels);
    for (int64_t row = 0; row < rows; row += rowsPerBlock) {
        const RowBlock block(product, kernels, firstRow + row, std::min(rowsPerBlock, rows - row),
            product.result + row * product.resultStride);
        for (int64_t tile = 0; tile < block.tileCount(); ++tile)
            block.packTile(tile);
        for (int64_t task = 0; task < block.taskCount(); ++task)
            block.multiplyPanels(task);
    }
}

} // namespace MLProgram
