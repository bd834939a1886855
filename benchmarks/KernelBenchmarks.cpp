// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// The kernels that matter, at the sizes of an encoder layer: in GFLOP/s, or values a second.
#include "Kernels/BatchedProduct.h"
#include "Kernels/Product.h"
#include "Kernels/Rows.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

using namespace MLProgram;

namespace {

std::vector<float> ones(int64_t count)
{
    return std::vector<float>(static_cast<size_t>(count), 1.0f);
}

void reportOperations(benchmark::State& state, int64_t multiplications)
{
    state.counters["FLOP/s"]
        = benchmark::Counter(2 * static_cast<double>(multiplications), benchmark::Counter::kIsIterationInvariantRate);
}

// rows x depth x columns, with 16-bit weights
void product(benchmark::State& state)
{
    const KernelSet& kernels = kernelsOfThisProcessor();
    const int64_t rows = state.range(0), depth = state.range(1), columns = state.range(2);
    const std::vector<float> left = ones(rows * depth);
    const std::vector<PlatformSupport::Float16> weights(static_cast<size_t>(columns * depth));
    const PackedMatrix right(weights.data(), { { columns, depth }, { { depth, 1 } } }, kernels.panelWidth);
    const StridedMatrix matrix(left.data(), rows, depth, depth, 1);
    std::vector<float> result(static_cast<size_t>(rows * columns));
    std::vector<float> workspace(static_cast<size_t>(productWorkspace(rows, depth)));
    for ([[maybe_unused]] auto _ : state)
        multiply({ &matrix, &right, result.data(), columns, nullptr, {}, workspace.data() }, kernels);
    reportOperations(state, rows * depth * columns);
}
BENCHMARK(product)
    ->Args({ 188, 1024, 4096 })
    ->Args({ 188, 4096, 1024 })
    ->Args({ 188, 256, 1024 })
    ->Args({ 188, 1024, 256 })
    ->Args({ 188, 256, 256 })
    ->Args({ 12000, 256, 256 })
    ->Args({ 1, 640, 8198 })
    ->Args({ 8, 640, 8198 })
    ->Args({ 32, 640, 8198 })
    ->UseRealTime();

// heads x frames x width x positions
void attentionScores(benchmark::State& state)
{
    const int64_t heads = state.range(0), frames = state.range(1), width = state.range(2), positions = state.range(3);
    const std::vector<float> queries = ones(heads * frames * width);
    const std::vector<float> keys = ones(heads * positions * width);
    std::vector<float> scores(static_cast<size_t>(heads * frames * positions));
    std::vector<float> workspace(static_cast<size_t>(batchedProductWorkspace(frames, width)));
    const BatchedProduct product { { heads }, { queries.data(), { width }, heads * width, 1 },
        { keys.data(), { width }, 1, heads * width }, scores.data(), { frames * positions }, positions, frames, width,
        positions, workspace.data() };
    for ([[maybe_unused]] auto _ : state)
        multiply(product, kernelsOfThisProcessor());
    reportOperations(state, heads * frames * width * positions);
}
BENCHMARK(attentionScores)->Args({ 8, 188, 128, 375 })->Args({ 4, 188, 64, 188 })->UseRealTime();

void depthwise(benchmark::State& state)
{
    constexpr int64_t frames = 188, taps = 9;
    const int64_t channels = state.range(0);
    const std::vector<float> x = ones(frames * channels);
    const std::vector<float> weights = ones(taps * channels);
    std::vector<float> y(x.size());
    Window window { .input = x.data(), .batch = 1, .batchStride = 0, .channels = channels, .dimensions = {} };
    window.dimensions.push_back({ frames, frames, taps, 1, 1, taps / 2, channels });
    for ([[maybe_unused]] auto _ : state)
        run(Depthwise { window, weights.data(), nullptr, y.data(), channels }, kernelsOfThisProcessor());
    reportOperations(state, frames * taps * channels);
}
BENCHMARK(depthwise)->Arg(256)->Arg(1024)->UseRealTime();

void softmax(benchmark::State& state)
{
    std::vector<float> row = ones(state.range(0));
    for ([[maybe_unused]] auto _ : state)
        kernelsOfThisProcessor().softmax(row.data(), state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(softmax)->Arg(188);

void layerNorm(benchmark::State& state)
{
    const std::vector<float> x = ones(state.range(0));
    std::vector<float> y(x.size());
    for ([[maybe_unused]] auto _ : state)
        kernelsOfThisProcessor().layerNorm({ x.data(), x.data(), x.data(), y.data(), state.range(0), 1e-5f });
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(layerNorm)->Arg(256)->Arg(1024);

void silu(benchmark::State& state)
{
    const std::vector<float> x = ones(state.range(0));
    std::vector<float> y(x.size());
    for ([[maybe_unused]] auto _ : state)
        kernelsOfThisProcessor().rowInstruction(
            { RowOperation::silu, { x.data(), false }, {}, {}, y.data(), state.range(0) });
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(silu)->Arg(512);

} // namespace
