// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// What the layers share that carry a state from one step of a sequence to the next.
//
// Sizes: S steps, B batch rows, I inputs and H units. x is [S, B, I], a state [B, H]. A bidirectional layer runs
// twice, each time with weights of its own, and puts both results side by side: its states are [B, 2 H].
#pragma once

#include "Operations/Definitions.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace MLProgram {

using Activation = float (*)(float);

// The activation that a parameter names.
Activation activationOf(const Operands& operands, std::string_view parameter, std::string_view otherwise);

// One run over the sequence: its direction, and the names of its operands.
struct RecurrentRun {
    bool isBackward;
    std::string_view inputWeights;
    std::string_view stateWeights;
    std::string_view bias;
    std::string_view peephole;
};

// The sizes of a layer, with the runs that it consists of.
struct RecurrentLayer {
    int64_t steps;
    int64_t rows;
    int64_t inputs;
    int64_t units;
    std::span<const RecurrentRun> runs;
    bool keepsSequence;

    int64_t allUnits() const noexcept { return units * static_cast<int64_t>(runs.size()); }
    Shape stateShape() const { return { rows, allUnits() }; }
    Shape sequenceShape() const { return { keepsSequence ? steps : 1, rows, allUnits() }; }
};

RecurrentLayer layerOf(const Operands& operands);

void requireShape(const Operands& operands, std::string_view name, const Shape& shape);
void requireShapeIfThere(const Operands& operands, std::string_view name, const Shape& shape);

// Checks what all layers share; `gates` is how many values each unit computes in a step. Gives the types of the
// sequence and of the last state.
TensorTypes inferLayer(const Operands& operands, int64_t gates);

using Floats = std::span<const float>; // a row of them

// Empty when the operand is absent.
Floats optionalRow(const Operands& operands, std::string_view name);

// The weights of one run. A row is what one gate of one unit multiplies with; the rows of a gate are together.
struct RecurrentWeights {
    Floats input; // [gates H, I]
    Floats state; // [gates H, H]
    Floats bias; // [gates H], or empty for zeros

    RecurrentWeights(const Operands& operands, const RecurrentRun& run);

    float ofInput(size_t row, Floats x) const;
    float ofState(size_t row, Floats h) const;
    float ofBias(size_t row) const { return bias.empty() ? 0 : bias[row]; }
    float sum(size_t row, Floats x, Floats h) const { return ofBias(row) + ofInput(row, x) + ofState(row, h); }
};

// One row of a state, as wide as the units of a run.
std::span<float> stateRow(const TensorView& state, int64_t row, size_t run, int64_t units);

// The inputs of one step.
Floats inputRow(const TensorView& x, const RecurrentLayer& layer, int64_t step, int64_t row);

// Runs over the sequence for one row of the batch: step(x, h) with the inputs of each step and the state, which it
// updates. The output of states is the state; `sequence` receives it after each step, or after the last.
template <typename Step>
void runSequence(const Operands& operands, const RecurrentLayer& layer, size_t run, int64_t row,
    std::span<const TensorView> outputs, Step&& step)
{
    const TensorView& x = operands.tensor("x");
    const std::span<float> h = stateRow(outputs[1], row, run, layer.units);
    std::ranges::copy(stateRow(operands.tensor("initial_h"), row, run, layer.units), h.begin());
    const auto store = [&](int64_t at) {
        std::ranges::copy(h, stateRow(outputs[0], at * layer.rows + row, run, layer.units).begin());
    };
    for (int64_t s = 0; s < layer.steps; ++s) {
        const int64_t at = layer.runs[run].isBackward ? layer.steps - 1 - s : s;
        step(inputRow(x, layer, at, row), h);
        if (layer.keepsSequence)
            store(at);
    }
    if (!layer.keepsSequence)
        store(0);
}

// Calls body for each run and each row of the batch.
template <typename Body> void forEachRunAndRow(const RecurrentLayer& layer, Body&& body)
{
    for (size_t run = 0; run < layer.runs.size(); ++run)
        for (int64_t row = 0; row < layer.rows; ++row)
            body(run, row);
}

} // namespace MLProgram
