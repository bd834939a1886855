// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Layers that carry a state from one step of a sequence to the next.
//
// Sizes: S steps, B batch rows, I inputs and H units. x is [S, B, I], a state [B, H]. A bidirectional layer runs
// twice, each time with weights of its own, and puts both results side by side: its states are [B, 2 H].
#include "Operations/Activations.h"
#include "Operations/Definitions.h"
#include "Operations/Scratch.h"
#include "Operations/Shapes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace MLProgram {

namespace {

using Row = std::span<const float>;

float hardSigmoidOf(float x)
{
    return std::clamp(0.2f * x + 0.5f, 0.0f, 1.0f);
}

float linearOf(float x)
{
    return x;
}

float reluOf(float x)
{
    return std::max(x, 0.0f);
}

// The customary constants, which keep unit variance.
float scaledTanhOf(float x)
{
    return 1.7159f * std::tanh(2.0f / 3.0f * x);
}

float softsignOf(float x)
{
    return x / (1 + std::fabs(x));
}

float tanhOf(float x)
{
    return std::tanh(x);
}

using Activation = float (*)(float);

constexpr std::pair<std::string_view, Activation> activationNames[] = {
    { "hard_sigmoid", hardSigmoidOf },
    { "linear", linearOf },
    { "relu", reluOf },
    { "scaled_tanh", scaledTanhOf },
    { "sigmoid", sigmoidOf },
    { "sigmoid_hard", hardSigmoidOf },
    { "softsign", softsignOf },
    { "tanh", tanhOf },
};

Activation activationOf(const Operands& operands, std::string_view parameter, std::string_view otherwise)
{
    const std::string_view name = operands.text(parameter, otherwise);
    for (const auto& [known, activation] : activationNames)
        if (known == name)
            return activation;
    operands.refuse("the activation \"" + std::string(name) + "\" is unknown");
}

// One run over the sequence: its direction, and the names of its operands.
struct Run {
    bool isBackward;
    std::string_view inputWeights;
    std::string_view stateWeights;
    std::string_view bias;
    std::string_view peephole;
};

constexpr Run forwardRun = { false, "weight_ih", "weight_hh", "bias", "peephole" };
constexpr Run reverseRun = { true, "weight_ih", "weight_hh", "bias", "peephole" };
constexpr Run backRun = { true, "weight_ih_back", "weight_hh_back", "bias_back", "peephole_back" };

constexpr Run forwardRuns[] = { forwardRun };
constexpr Run reverseRuns[] = { reverseRun };
constexpr Run bothRuns[] = { forwardRun, backRun };

std::span<const Run> runsOf(const Operands& operands)
{
    const std::string_view direction = operands.text("direction", "forward");
    if (direction == "forward")
        return forwardRuns;
    if (direction == "reverse")
        return reverseRuns;
    if (direction == "bidirectional")
        return bothRuns;
    operands.refuse("the direction \"" + std::string(direction) + "\" is unknown");
}

// The sizes of a layer, with the runs that it consists of.
struct Layer {
    int64_t steps;
    int64_t rows;
    int64_t inputs;
    int64_t units;
    std::span<const Run> runs;
    bool keepsSequence;

    int64_t allUnits() const noexcept { return units * static_cast<int64_t>(runs.size()); }
    Shape stateShape() const { return { rows, allUnits() }; }
    Shape sequenceShape() const { return { keepsSequence ? steps : 1, rows, allUnits() }; }
};

Layer layerOf(const Operands& operands)
{
    const TensorView& x = realTensor(operands, "x");
    requireRank(operands, x, 3, 3);
    const TensorView& stateWeights = realTensor(operands, "weight_hh");
    requireRank(operands, stateWeights, 2, 2);
    const Shape& shape = x.type.shape;
    return { shape[0], shape[1], shape[2], stateWeights.type.shape[1], runsOf(operands),
        operands.flag("output_sequence", false) };
}

void requireShape(const Operands& operands, std::string_view name, const Shape& shape)
{
    if (realTensor(operands, name).type.shape != shape)
        operands.refuse('"' + std::string(name) + "\" has not the shape that the other operands ask for");
}

void requireShapeIfThere(const Operands& operands, std::string_view name, const Shape& shape)
{
    if (operands.has(name))
        requireShape(operands, name, shape);
}

// Checks what all layers share; `gates` is how many values each unit computes in a step. Gives the types of the
// sequence and of the last state.
TensorTypes inferLayer(const Operands& operands, int64_t gates)
{
    const Layer layer = layerOf(operands);
    for (const Run& run : layer.runs) {
        requireShape(operands, run.inputWeights, { gates * layer.units, layer.inputs });
        requireShape(operands, run.stateWeights, { gates * layer.units, layer.units });
        requireShapeIfThere(operands, run.bias, { gates * layer.units });
    }
    requireShape(operands, "initial_h", layer.stateShape());
    return { outputType(operands, ElementType::real, layer.sequenceShape()),
        outputType(operands, ElementType::real, layer.stateShape()) };
}

Row optionalRow(const Operands& operands, std::string_view name)
{
    const TensorView* const tensor = operands.optionalTensor(name);
    return tensor == nullptr ? Row {} : tensor->reals();
}

float dot(Row a, Row b)
{
    float sum = 0;
    for (size_t i = 0; i < a.size(); ++i)
        sum += a[i] * b[i];
    return sum;
}

Row rowOf(Row matrix, size_t row, size_t width)
{
    return matrix.subspan(row * width, width);
}

// The weights of one run. A row is what one gate of one unit multiplies with; the rows of a gate are together.
struct Weights {
    Row input; // [gates H, I]
    Row state; // [gates H, H]
    Row bias; // [gates H], or empty for zeros

    Weights(const Operands& operands, const Run& run)
        : input(operands.tensor(run.inputWeights).reals())
        , state(operands.tensor(run.stateWeights).reals())
        , bias(optionalRow(operands, run.bias))
    {
    }

    float ofInput(size_t row, Row x) const { return dot(rowOf(input, row, x.size()), x); }
    float ofState(size_t row, Row h) const { return dot(rowOf(state, row, h.size()), h); }
    float ofBias(size_t row) const { return bias.empty() ? 0 : bias[row]; }
    float sum(size_t row, Row x, Row h) const { return ofBias(row) + ofInput(row, x) + ofState(row, h); }
};

// One row of a state, as wide as the units of a run.
std::span<float> stateRow(const TensorView& state, int64_t row, size_t run, int64_t units)
{
    const int64_t width = state.type.shape.back();
    return state.reals().subspan(
        static_cast<size_t>(row * width) + run * static_cast<size_t>(units), static_cast<size_t>(units));
}

// Runs over the sequence for one row of the batch: step(x, h) with the inputs of each step and the state, which it
// updates. The output of states is the state; `sequence` receives it after each step, or after the last.
template <typename Step>
void runSequence(const Operands& operands, const Layer& layer, size_t run, int64_t row,
    std::span<const TensorView> outputs, Step&& step)
{
    const Row x = operands.tensor("x").reals();
    const std::span<float> h = stateRow(outputs[1], row, run, layer.units);
    std::ranges::copy(stateRow(operands.tensor("initial_h"), row, run, layer.units), h.begin());
    const auto store = [&](int64_t at) {
        std::ranges::copy(h, stateRow(outputs[0], at * layer.rows + row, run, layer.units).begin());
    };
    for (int64_t s = 0; s < layer.steps; ++s) {
        const int64_t at = layer.runs[run].isBackward ? layer.steps - 1 - s : s;
        step(rowOf(x, static_cast<size_t>(at * layer.rows + row), static_cast<size_t>(layer.inputs)), h);
        if (layer.keepsSequence)
            store(at);
    }
    if (!layer.keepsSequence)
        store(0);
}

// Calls body for each run and each row of the batch.
template <typename Body> void forEachRunAndRow(const Layer& layer, Body&& body)
{
    for (size_t run = 0; run < layer.runs.size(); ++run)
        for (int64_t row = 0; row < layer.rows; ++row)
            body(run, row);
}

TensorTypes inferPlainLayer(const Operands& operands)
{
    activationOf(operands, "activation", "tanh");
    return inferLayer(operands, 1);
}

// h' = activation(W x + R h + b)
void evaluatePlainLayer(const Operands& operands, std::span<const TensorView> outputs)
{
    const Layer layer = layerOf(operands);
    const Activation activation = activationOf(operands, "activation", "tanh");
    const std::span<float> next = scratchRow<float>(static_cast<size_t>(layer.units));
    forEachRunAndRow(layer, [&](size_t run, int64_t row) {
        const Weights weights(operands, layer.runs[run]);
        runSequence(operands, layer, run, row, outputs, [&](Row x, std::span<float> h) {
            for (size_t unit = 0; unit < h.size(); ++unit)
                next[unit] = activation(weights.sum(unit, x, h));
            std::ranges::copy(next, h.begin());
        });
    });
}

constexpr int64_t gruGates = 3; // reset, candidate, keep

TensorTypes inferGru(const Operands& operands)
{
    activationOf(operands, "recurrent_activation", "sigmoid");
    activationOf(operands, "activation", "tanh");
    operands.flag("reset_after", false);
    requireShapeIfThere(operands, "input_bias", { layerOf(operands).units });
    return inferLayer(operands, gruGates);
}

// r = gate(Wr x + Rr h + br)                 how much of the old state the candidate sees
// z = gate(Wz x + Rz h + bz)                 how much of the old state stays
// o = activation(Wo x + Ro (r h) + bo + bi)  the candidate; with reset_after activation(Wo x + r (Ro h + bo) + bi)
// h' = (1 - z) o + z h                       where bi is "input_bias"
class GruStep {
public:
    GruStep(const Operands& operands, const Layer& layer, const Run& run)
        : weights_(operands, run)
        , gate_(activationOf(operands, "recurrent_activation", "sigmoid"))
        , activation_(activationOf(operands, "activation", "tanh"))
        , resetsAfter_(operands.flag("reset_after", false))
        , inputBias_(optionalRow(operands, "input_bias"))
        , units_(static_cast<size_t>(layer.units))
        , scratch_(scratchRow<float>(4 * units_))
    {
    }

    void operator()(Row x, std::span<float> h) const
    {
        const auto reset = scratch_.subspan(0, units_);
        const auto visible = scratch_.subspan(units_, units_);
        const auto candidate = scratch_.subspan(2 * units_, units_);
        const auto keep = scratch_.subspan(3 * units_, units_);
        for (size_t unit = 0; unit < units_; ++unit) {
            reset[unit] = gate_(weights_.sum(unit, x, h));
            keep[unit] = gate_(weights_.sum(2 * units_ + unit, x, h));
            visible[unit] = reset[unit] * h[unit];
        }
        for (size_t unit = 0; unit < units_; ++unit)
            candidate[unit] = activation_(
                resetsAfter_ ? resetAfterProduct(unit, x, h, reset[unit]) : resetBefore(unit, x, visible));
        for (size_t unit = 0; unit < units_; ++unit)
            h[unit] = (1 - keep[unit]) * candidate[unit] + keep[unit] * h[unit];
    }

private:
    float biasOfInput(size_t unit) const { return inputBias_.empty() ? 0 : inputBias_[unit]; }

    float resetBefore(size_t unit, Row x, Row visible) const
    {
        return weights_.sum(units_ + unit, x, visible) + biasOfInput(unit);
    }

    float resetAfterProduct(size_t unit, Row x, Row h, float reset) const
    {
        const size_t row = units_ + unit;
        return weights_.ofInput(row, x) + reset * (weights_.ofState(row, h) + weights_.ofBias(row)) + biasOfInput(unit);
    }

    Weights weights_;
    Activation gate_;
    Activation activation_;
    bool resetsAfter_;
    Row inputBias_;
    size_t units_;
    std::span<float> scratch_;
};

void evaluateGru(const Operands& operands, std::span<const TensorView> outputs)
{
    const Layer layer = layerOf(operands);
    forEachRunAndRow(layer, [&](size_t run, int64_t row) {
        runSequence(operands, layer, run, row, outputs, GruStep(operands, layer, layer.runs[run]));
    });
}

constexpr int64_t lstmGates = 4; // input, forget, output, candidate
constexpr int64_t lstmPeepholes = 3; // input, forget, output

TensorTypes inferLstm(const Operands& operands)
{
    activationOf(operands, "recurrent_activation", "sigmoid");
    activationOf(operands, "cell_activation", "tanh");
    activationOf(operands, "activation", "tanh");
    operands.require(operands.real("clip", 0) >= 0, "\"clip\" must not be negative");
    const Layer layer = layerOf(operands);
    for (const Run& run : layer.runs)
        requireShapeIfThere(operands, run.peephole, { lstmPeepholes * layer.units });
    requireShape(operands, "initial_c", layer.stateShape());
    TensorTypes types = inferLayer(operands, lstmGates);
    types.push_back(types.back());
    return types;
}

// i = gate(Wi x + Ri h + bi + pi c)         how much of the candidate enters the cell
// f = gate(Wf x + Rf h + bf + pf c)         how much of the cell stays
// z = cellActivation(Wz x + Rz h + bz)      the candidate
// c' = f c + i z                            the cell, held between -clip and clip
// o = gate(Wo x + Ro h + bo + po c')        how much of the cell shows
// h' = o activation(c')
class LstmStep {
public:
    LstmStep(const Operands& operands, const Layer& layer, const Run& run, std::span<float> cell)
        : weights_(operands, run)
        , peephole_(optionalRow(operands, run.peephole))
        , gate_(activationOf(operands, "recurrent_activation", "sigmoid"))
        , cellActivation_(activationOf(operands, "cell_activation", "tanh"))
        , activation_(activationOf(operands, "activation", "tanh"))
        , clip_(operands.real("clip", std::numeric_limits<float>::infinity()))
        , cell_(cell)
        , units_(static_cast<size_t>(layer.units))
        , sums_(scratchRow<float>(lstmGates * units_))
    {
    }

    void operator()(Row x, std::span<float> h) const
    {
        for (size_t row = 0; row < sums_.size(); ++row)
            sums_[row] = weights_.sum(row, x, h);
        for (size_t unit = 0; unit < units_; ++unit) {
            float& c = cell_[unit];
            const float i = gate_(sums_[unit] + peep(0, unit, c));
            const float f = gate_(sums_[units_ + unit] + peep(1, unit, c));
            const float z = cellActivation_(sums_[3 * units_ + unit]);
            c = std::clamp(f * c + i * z, -clip_, clip_);
            const float o = gate_(sums_[2 * units_ + unit] + peep(2, unit, c));
            h[unit] = o * activation_(c);
        }
    }

private:
    float peep(size_t gate, size_t unit, float c) const
    {
        return peephole_.empty() ? 0 : peephole_[gate * units_ + unit] * c;
    }

    Weights weights_;
    Row peephole_; // [3 H], or empty
    Activation gate_;
    Activation cellActivation_;
    Activation activation_;
    float clip_;
    std::span<float> cell_;
    size_t units_;
    std::span<float> sums_; // [4 H]
};

void evaluateLstm(const Operands& operands, std::span<const TensorView> outputs)
{
    const Layer layer = layerOf(operands);
    forEachRunAndRow(layer, [&](size_t run, int64_t row) {
        const std::span<float> cell = stateRow(outputs[2], row, run, layer.units);
        std::ranges::copy(stateRow(operands.tensor("initial_c"), row, run, layer.units), cell.begin());
        runSequence(operands, layer, run, row, outputs, LstmStep(operands, layer, layer.runs[run], cell));
    });
}

constexpr OperationDefinition definitions[] = {
    { "gru", inferGru, evaluateGru },
    { "lstm", inferLstm, evaluateLstm },
    { "rnn", inferPlainLayer, evaluatePlainLayer },
};

} // namespace

Definitions recurrentLayers() noexcept
{
    return definitions;
}

} // namespace MLProgram
