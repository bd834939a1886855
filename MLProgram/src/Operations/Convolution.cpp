// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Convolutions over one to three spatial dimensions, in groups of channels.
#include "Operations/Definitions.h"
#include "Operations/Shapes.h"
#include "Operations/Windows.h"

namespace MLProgram {

namespace {

struct Convolution {
    int64_t batch, groups;
    int64_t groupInputs, groupOutputs; // channels
    Windows windows;
    Shape output;

    int64_t inputSize() const { return windows[0].input * windows[1].input * windows[2].input; }
    int64_t kernelSize() const { return windows[0].size * windows[1].size * windows[2].size; }
};

struct Channels {
    int64_t inputs, outputs; // all of them
    int64_t weightInputs; // as the weight tells
};

Convolution convolutionOf(const Operands& operands, const Channels& channels, Direction direction)
{
    const TensorView& x = operands.tensor("x");
    const TensorView& weight = operands.tensor("weight");
    const int64_t groups = operands.integer("groups", 1);
    operands.require(groups >= 1 && channels.inputs % groups == 0 && channels.outputs % groups == 0,
        "its channels cannot be divided into that many groups");
    operands.require(channels.weightInputs == channels.inputs, "\"weight\" is for another number of channels");
    optionalTensor(operands, "bias", { ElementType::real, { channels.outputs } });
    Convolution convolution { x.type.shape[0], groups, channels.inputs / groups, channels.outputs / groups,
        windowsOf(operands, x.type.shape, std::span(weight.type.shape).subspan(2), direction),
        { x.type.shape[0], channels.outputs } };
    const size_t missing = mostSpatialDimensions - (x.type.shape.size() - 2);
    for (size_t i = missing; i < mostSpatialDimensions; ++i)
        convolution.output.push_back(convolution.windows[i].output);
    return convolution;
}

void requireSpatial(const Operands& operands)
{
    const TensorView& x = realTensor(operands, "x");
    const TensorView& weight = realTensor(operands, "weight");
    requireRank(operands, x, 3, 2 + mostSpatialDimensions);
    requireRank(operands, weight, x.type.shape.size(), x.type.shape.size());
}

// x [N, inputs, D..], weight [outputs, inputs / groups, K..]
Convolution convolution(const Operands& operands)
{
    requireSpatial(operands);
    const Shape& x = operands.tensor("x").type.shape;
    const Shape& weight = operands.tensor("weight").type.shape;
    const int64_t groups = operands.integer("groups", 1);
    return convolutionOf(operands, { x[1], weight[0], weight[1] * groups }, Direction::convolution);
}

// x [N, inputs, D..], weight [inputs, outputs / groups, K..]
Convolution transposedConvolution(const Operands& operands)
{
    requireSpatial(operands);
    const Shape& x = operands.tensor("x").type.shape;
    const Shape& weight = operands.tensor("weight").type.shape;
    const int64_t groups = operands.integer("groups", 1);
    operands.require(groups >= 1, "it must have at least one group");
    Convolution convolution
        = convolutionOf(operands, { x[1], weight[1] * groups, weight[0] }, Direction::transposedConvolution);
    if (const auto wanted = operands.optionalIntegers("output_shape")) {
        operands.require(wanted->size() == x.size(), "\"output_shape\" has another rank");
        operands.require((*wanted)[0] == x[0] && (*wanted)[1] == convolution.output[1],
            "\"output_shape\" differs from the batch or the channels");
        for (size_t i = 2; i < x.size(); ++i) {
            convolution.output[i] = (*wanted)[i];
            convolution.windows[mostSpatialDimensions - x.size() + i].output = (*wanted)[i];
        }
    }
    return convolution;
}

// Adds the products of a window and what it meets of one input channel.
struct ByCovering {
    static void add(float& sum, const Windows& windows, const auto& position, const float* input, const float* weight)
    {
        forEachCovered(
            windows, position, [&](int64_t inWindow, int64_t inInput) { sum += input[inInput] * weight[inWindow]; });
    }
};
struct BySpreading {
    static void add(float& sum, const Windows& windows, const auto& position, const float* input, const float* weight)
    {
        forEachSpreading(
            windows, position, [&](int64_t inWindow, int64_t inInput) { sum += input[inInput] * weight[inWindow]; });
    }
};

// weightOf(group, output channel in the group, input channel in the group) is the number of a kernel.
template <typename Products, typename WeightOf>
void convolve(const Operands& operands, const Convolution& convolution, const TensorView& output, WeightOf weightOf)
{
    const float* const x = operands.tensor("x").reals().data();
    const float* const weight = operands.tensor("weight").reals().data();
    const TensorView* const bias = operands.optionalTensor("bias");
    float* to = output.reals().data();
    const auto outputChannel = [&](int64_t n, int64_t group, int64_t channel) {
        const int64_t firstInput = (n * convolution.groups + group) * convolution.groupInputs;
        forEachPosition(convolution.windows, [&](const auto& position) {
            float sum = 0;
            for (int64_t i = 0; i < convolution.groupInputs; ++i)
                Products::add(sum, convolution.windows, position, x + (firstInput + i) * convolution.inputSize(),
                    weight + weightOf(group, channel, i) * convolution.kernelSize());
            *to++ = bias == nullptr ? sum : sum + bias->reals()[group * convolution.groupOutputs + channel];
        });
    };
    for (int64_t n = 0; n < convolution.batch; ++n)
        for (int64_t group = 0; group < convolution.groups; ++group)
            for (int64_t channel = 0; channel < convolution.groupOutputs; ++channel)
                outputChannel(n, group, channel);
}

template <Convolution (*convolution)(const Operands&)> TensorTypes infer(const Operands& operands)
{
    return { outputType(operands, ElementType::real, convolution(operands).output) };
}

void evaluateConvolution(const Operands& operands, std::span<const TensorView> outputs)
{
    const Convolution c = convolution(operands);
    convolve<ByCovering>(operands, c, outputs[0], [&](int64_t group, int64_t output, int64_t input) {
        return (group * c.groupOutputs + output) * c.groupInputs + input;
    });
}

void evaluateTransposed(const Operands& operands, std::span<const TensorView> outputs)
{
    const Convolution c = transposedConvolution(operands);
    convolve<BySpreading>(operands, c, outputs[0], [&](int64_t group, int64_t output, int64_t input) {
        return (group * c.groupInputs + input) * c.groupOutputs + output;
    });
}

constexpr OperationDefinition definitions[] = {
    { "conv", infer<convolution>, evaluateConvolution },
    { "conv_transpose", infer<transposedConvolution>, evaluateTransposed },
};

} // namespace

Definitions convolutions() noexcept
{
    return definitions;
}

} // namespace MLProgram
