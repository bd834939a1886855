// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations that bring the values of a tensor to a common scale.
#include "Operations/Definitions.h"
#include "Operations/Iteration.h"

#include <cmath>

namespace MLProgram {

namespace {

constexpr float defaultEpsilon = 1e-5f;
constexpr float l2NormEpsilon = 1e-6f;

// Channels are dimension 1.
constexpr size_t channelAxis = 1;

// Mean 0 and variance 1 for each group of elements, then a factor and a term for each of its elements.
// parameterOf(other, inside) is the index of the parameters for the inside-th element of a group.
template <typename ParameterOf>
void standardise(const Operands& operands, const Grouping& groups, const TensorView& output, ParameterOf parameterOf)
{
    const auto x = operands.tensor("x").reals();
    const auto y = output.reals();
    const TensorView* const gamma = operands.optionalTensor("gamma");
    const TensorView* const beta = operands.optionalTensor("beta");
    const float epsilon = operands.real("epsilon", defaultEpsilon);
    const auto count = static_cast<float>(elementCount(groups.along));
    int64_t other = 0;
    groups.forEachOther([&](int64_t base) {
        float sum = 0;
        groups.forEachAlong(base, [&](int64_t at) { sum += x[at]; });
        const float mean = sum / count;
        float squares = 0;
        groups.forEachAlong(base, [&](int64_t at) { squares += (x[at] - mean) * (x[at] - mean); });
        const float deviation = std::sqrt(squares / count + epsilon);
        int64_t inside = 0;
        groups.forEachAlong(base, [&](int64_t at) {
            const int64_t parameter = parameterOf(other, inside++);
            y[at] = (x[at] - mean) / deviation * (gamma != nullptr ? gamma->reals()[parameter] : 1.0f)
                + (beta != nullptr ? beta->reals()[parameter] : 0.0f);
        });
        ++other;
    });
}

TensorTypes inferLayerNorm(const Operands& operands)
{
    const TensorView& x = realTensor(operands, "x");
    const Grouping groups = grouped(x.type.shape, axesOperand(operands, "axes", x.type.shape.size()));
    operands.real("epsilon", defaultEpsilon);
    optionalTensor(operands, "gamma", { ElementType::real, groups.along });
    optionalTensor(operands, "beta", { ElementType::real, groups.along });
    return { x.type };
}

void evaluateLayerNorm(const Operands& operands, std::span<const TensorView> outputs)
{
    const Shape& shape = outputs[0].type.shape;
    standardise(operands, grouped(shape, axesOperand(operands, "axes", shape.size())), outputs[0],
        [](int64_t, int64_t inside) { return inside; });
}

void requireChannelParameters(const Operands& operands, const TensorView& x)
{
    operands.real("epsilon", defaultEpsilon);
    const TensorType channels { ElementType::real, { x.type.shape[channelAxis] } };
    for (const std::string_view name : { "gamma", "beta", "mean", "variance" })
        optionalTensor(operands, name, channels);
}

AxisSet spatialAxes(const Shape& shape)
{
    return { ((1u << shape.size()) - 1) & ~3u };
}

TensorTypes inferInstanceNorm(const Operands& operands)
{
    const TensorView& x = realTensor(operands, "x");
    requireRank(operands, x, 3);
    requireChannelParameters(operands, x);
    return { x.type };
}

void evaluateInstanceNorm(const Operands& operands, std::span<const TensorView> outputs)
{
    const Shape& shape = outputs[0].type.shape;
    standardise(operands, grouped(shape, spatialAxes(shape)), outputs[0],
        [&](int64_t other, int64_t) { return other % shape[channelAxis]; });
}

TensorTypes inferBatchNorm(const Operands& operands)
{
    const TensorView& x = realTensor(operands, "x");
    requireRank(operands, x, 2);
    realTensor(operands, "mean");
    realTensor(operands, "variance");
    requireChannelParameters(operands, x);
    return { x.type };
}

void evaluateBatchNorm(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const auto mean = operands.tensor("mean").reals();
    const auto variance = operands.tensor("variance").reals();
    const TensorView* const gamma = operands.optionalTensor("gamma");
    const TensorView* const beta = operands.optionalTensor("beta");
    const float epsilon = operands.real("epsilon", defaultEpsilon);
    const Grouping channels = grouped(x.type.shape, channelAxis);
    channels.forEachOther([&](int64_t base) {
        size_t c = 0;
        channels.forEachAlong(base, [&](int64_t at) {
            outputs[0].reals()[at] = (x.reals()[at] - mean[c]) / std::sqrt(variance[c] + epsilon)
                    * (gamma != nullptr ? gamma->reals()[c] : 1.0f)
                + (beta != nullptr ? beta->reals()[c] : 0.0f);
            ++c;
        });
    });
}

TensorTypes inferL2Norm(const Operands& operands)
{
    const TensorView& x = realTensor(operands, "x");
    requireRank(operands, x, 3);
    operands.real("epsilon", l2NormEpsilon);
    return { x.type };
}

// Over the last three dimensions.
void evaluateL2Norm(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const float epsilon = operands.real("epsilon", l2NormEpsilon);
    const size_t rank = x.type.shape.size();
    const Grouping blocks = grouped(x.type.shape, AxisSet { 7u << (rank - 3) });
    blocks.forEachOther([&](int64_t base) {
        float squares = 0;
        blocks.forEachAlong(base, [&](int64_t at) { squares += x.reals()[at] * x.reals()[at]; });
        const float norm = std::sqrt(squares + epsilon);
        blocks.forEachAlong(base, [&](int64_t at) { outputs[0].reals()[at] = x.reals()[at] / norm; });
    });
}

// Divides each channel by the strength of its neighbourhood of `size` channels, of which the larger half stands
// before it.
struct LocalResponse {
    int64_t size;
    float alpha, beta, k;
};

LocalResponse localResponse(const Operands& operands)
{
    const LocalResponse response { operands.integer("size"), operands.real("alpha", 1e-4f),
        operands.real("beta", 0.75f), operands.real("k", 1.0f) };
    operands.require(response.size >= 1, "its size must be at least 1");
    return response;
}

TensorTypes inferLocalResponseNorm(const Operands& operands)
{
    const TensorView& x = realTensor(operands, "x");
    requireRank(operands, x, 3);
    localResponse(operands);
    return { x.type };
}

void evaluateLocalResponseNorm(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const auto [size, alpha, beta, k] = localResponse(operands);
    const int64_t channels = x.type.shape[channelAxis];
    const int64_t step = countBetween(x.type.shape, channelAxis + 1, x.type.shape.size());
    const auto from = x.reals();
    for (int64_t i = 0; i < x.count(); ++i) {
        const int64_t channel = i / step % channels;
        const int64_t last = std::min(channels - 1, channel + (size - 1) / 2);
        float squares = 0;
        for (int64_t c = std::max<int64_t>(0, channel - size / 2); c <= last; ++c) {
            const float neighbour = from[i + (c - channel) * step];
            squares += neighbour * neighbour;
        }
        outputs[0].reals()[i] = from[i] / std::pow(k + alpha / static_cast<float>(size) * squares, beta);
    }
}

constexpr OperationDefinition definitions[] = {
    { "batch_norm", inferBatchNorm, evaluateBatchNorm },
    { "instance_norm", inferInstanceNorm, evaluateInstanceNorm },
    { "l2_norm", inferL2Norm, evaluateL2Norm },
    { "layer_norm", inferLayerNorm, evaluateLayerNorm },
    { "local_response_norm", inferLocalResponseNorm, evaluateLocalResponseNorm },
};

} // namespace

Definitions normalisations() noexcept
{
    return definitions;
}

} // namespace MLProgram
