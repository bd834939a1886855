// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/RecurrentLayer.h"

#include "Operations/Activations.h"
#include "Operations/Shapes.h"

#include <cmath>
#include <string>
#include <utility>

namespace MLProgram {

namespace {

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

constexpr RecurrentRun forwardRun = { false, "weight_ih", "weight_hh", "bias", "peephole" };
constexpr RecurrentRun reverseRun = { true, "weight_ih", "weight_hh", "bias", "peephole" };
constexpr RecurrentRun backRun = { true, "weight_ih_back", "weight_hh_back", "bias_back", "peephole_back" };

constexpr RecurrentRun forwardRuns[] = { forwardRun };
constexpr RecurrentRun reverseRuns[] = { reverseRun };
constexpr RecurrentRun bothRuns[] = { forwardRun, backRun };

std::span<const RecurrentRun> runsOf(const Operands& operands)
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

float dot(Floats a, Floats b)
{
    float sum = 0;
    for (size_t i = 0; i < a.size(); ++i)
        sum += a[i] * b[i];
    return sum;
}

Floats rowOf(Floats matrix, size_t row, size_t width)
{
    return matrix.subspan(row * width, width);
}

} // namespace

Activation activationOf(const Operands& operands, std::string_view parameter, std::string_view otherwise)
{
    const std::string_view name = operands.text(parameter, otherwise);
    for (const auto& [known, activation] : activationNames)
        if (known == name)
            return activation;
    operands.refuse("the activation \"" + std::string(name) + "\" is unknown");
}

RecurrentLayer layerOf(const Operands& operands)
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

TensorTypes inferLayer(const Operands& operands, int64_t gates)
{
    const RecurrentLayer layer = layerOf(operands);
    for (const RecurrentRun& run : layer.runs) {
        requireShape(operands, run.inputWeights, { gates * layer.units, layer.inputs });
        requireShape(operands, run.stateWeights, { gates * layer.units, layer.units });
        requireShapeIfThere(operands, run.bias, { gates * layer.units });
    }
    requireShape(operands, "initial_h", layer.stateShape());
    return { outputType(operands, ElementType::real, layer.sequenceShape()),
        outputType(operands, ElementType::real, layer.stateShape()) };
}

Floats optionalRow(const Operands& operands, std::string_view name)
{
    const TensorView* const tensor = operands.optionalTensor(name);
    return tensor == nullptr ? Floats {} : tensor->reals();
}

RecurrentWeights::RecurrentWeights(const Operands& operands, const RecurrentRun& run)
    : input(operands.tensor(run.inputWeights).reals())
    , state(operands.tensor(run.stateWeights).reals())
    , bias(optionalRow(operands, run.bias))
{
}

float RecurrentWeights::ofInput(size_t row, Floats x) const
{
    return dot(rowOf(input, row, x.size()), x);
}

float RecurrentWeights::ofState(size_t row, Floats h) const
{
    return dot(rowOf(state, row, h.size()), h);
}

std::span<float> stateRow(const TensorView& state, int64_t row, size_t run, int64_t units)
{
    const int64_t width = state.type.shape.back();
    return state.reals().subspan(
        static_cast<size_t>(row * width) + run * static_cast<size_t>(units), static_cast<size_t>(units));
}

Floats inputRow(const TensorView& x, const RecurrentLayer& layer, int64_t step, int64_t row)
{
    return rowOf(x.reals(), static_cast<size_t>(step * layer.rows + row), static_cast<size_t>(layer.inputs));
}

} // namespace MLProgram
