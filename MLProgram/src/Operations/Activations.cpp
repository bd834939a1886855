// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Activation functions, with their parameters.
#include "Operations/Activations.h"

#include "Operations/Definitions.h"
#include "Operations/Iteration.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace MLProgram {

float sigmoidOf(float x) noexcept
{
    return 1.0f / (1.0f + std::exp(-x));
}

namespace {

float reluOf(float x)
{
    return std::max(x, 0.0f);
}
float relu6Of(float x)
{
    return std::min(std::max(x, 0.0f), 6.0f);
}
float siluOf(float x)
{
    return x * sigmoidOf(x);
}
float softsignOf(float x)
{
    return x / (1.0f + std::fabs(x));
}

// log(1 + e^x) that neither overflows for large x nor loses small results.
float softplusOf(float x)
{
    return std::max(x, 0.0f) + std::log1p(std::exp(-std::fabs(x)));
}

float exactGelu(float x)
{
    return 0.5f * x * (1.0f + std::erf(x / std::numbers::sqrt2_v<float>));
}

float tanhGelu(float x)
{
    constexpr float scale = 0.797884560802865f; // sqrt(2 / pi)
    constexpr float cubic = 0.044715f;
    return 0.5f * x * (1.0f + std::tanh(scale * (x + cubic * x * x * x)));
}

float sigmoidGelu(float x)
{
    return x * sigmoidOf(1.702f * x);
}

struct Gelu {
    std::string_view mode;
    float (*function)(float);
};
constexpr Gelu gelus[] = {
    { "EXACT", exactGelu },
    { "TANH_APPROXIMATION", tanhGelu },
    { "SIGMOID_APPROXIMATION", sigmoidGelu },
};

const Gelu& geluOf(const Operands& operands)
{
    const auto* const found = std::ranges::find(gelus, operands.text("mode", "EXACT"), &Gelu::mode);
    operands.require(found != std::end(gelus), "its mode is unknown");
    return *found;
}

// Functions with two parameters. `alpha` and `beta` are the defaults; NaN stands for "must be given".
constexpr float required = std::numeric_limits<float>::quiet_NaN();

struct ClampedRelu {
    static constexpr float alpha = 1, beta = 1;
    static float of(float x, float a, float b) { return std::min(x >= 0 ? x : a * x, b); }
};

struct Elu {
    static constexpr float alpha = 1, beta = 0;
    static float of(float x, float a, float) { return x > 0 ? x : a * std::expm1(x); }
};

struct LeakyRelu {
    static constexpr float alpha = 0.01f, beta = 0;
    static float of(float x, float a, float) { return x >= 0 ? x : a * x; }
};

struct LinearActivation {
    static constexpr float alpha = required, beta = 0;
    static float of(float x, float a, float b) { return a * x + b; }
};

struct ScaledTanh {
    static constexpr float alpha = 1, beta = 1;
    static float of(float x, float a, float b) { return a * std::tanh(b * x); }
};

struct HardSigmoid {
    static constexpr float alpha = 0.2f, beta = 0.5f;
    static float of(float x, float a, float b) { return std::min(std::max(a * x + b, 0.0f), 1.0f); }
};

struct ThresholdedRelu {
    static constexpr float alpha = 1, beta = 0;
    static float of(float x, float a, float) { return x >= a ? x : 0.0f; }
};

float parameter(const Operands& operands, std::string_view name, float otherwise)
{
    return std::isnan(otherwise) ? operands.real(name) : operands.real(name, otherwise);
}

TensorTypes inferPlain(const Operands& operands)
{
    return { realTensor(operands, "x").type };
}

template <float (*function)(float)> void evaluatePlain(const Operands& operands, std::span<const TensorView> outputs)
{
    mapElements<float>(operands, outputs[0], function);
}

TensorTypes inferGelu(const Operands& operands)
{
    geluOf(operands);
    return inferPlain(operands);
}

void evaluateGelu(const Operands& operands, std::span<const TensorView> outputs)
{
    mapElements<float>(operands, outputs[0], geluOf(operands).function);
}

template <typename Function> TensorTypes inferScaled(const Operands& operands)
{
    parameter(operands, "alpha", Function::alpha);
    parameter(operands, "beta", Function::beta);
    return inferPlain(operands);
}

template <typename Function> void evaluateScaled(const Operands& operands, std::span<const TensorView> outputs)
{
    const float alpha = parameter(operands, "alpha", Function::alpha);
    const float beta = parameter(operands, "beta", Function::beta);
    mapElements<float>(operands, outputs[0], [=](float x) { return Function::of(x, alpha, beta); });
}

// One parameter for each channel, dimension 1.
constexpr size_t channelAxis = 1;

void requirePerChannel(const Operands& operands, const TensorView& x, std::string_view name)
{
    const TensorView& values = realTensor(operands, name);
    operands.require(
        values.type.shape == Shape { x.type.shape[channelAxis] }, "it needs one parameter for each channel");
}

TensorTypes inferPrelu(const Operands& operands)
{
    const TensorView& x = realTensor(operands, "x");
    requireRank(operands, x, 2);
    requirePerChannel(operands, x, "alpha");
    return { x.type };
}

TensorTypes inferParametricSoftplus(const Operands& operands)
{
    TensorTypes types = inferPrelu(operands);
    requirePerChannel(operands, operands.tensor("x"), "beta");
    return types;
}

template <typename Function> void forEachChannel(const Operands& operands, const TensorView& output, Function function)
{
    const TensorView& x = operands.tensor("x");
    const Grouping channels = grouped(x.type.shape, channelAxis);
    channels.forEachOther([&](int64_t base) {
        size_t channel = 0;
        channels.forEachAlong(base, [&](int64_t at) { output.reals()[at] = function(x.reals()[at], channel++); });
    });
}

void evaluatePrelu(const Operands& operands, std::span<const TensorView> outputs)
{
    const auto alpha = operands.tensor("alpha").reals();
    forEachChannel(operands, outputs[0], [=](float x, size_t c) { return x >= 0 ? x : alpha[c] * x; });
}

void evaluateParametricSoftplus(const Operands& operands, std::span<const TensorView> outputs)
{
    const auto alpha = operands.tensor("alpha").reals();
    const auto beta = operands.tensor("beta").reals();
    forEachChannel(operands, outputs[0], [=](float x, size_t c) { return alpha[c] * softplusOf(beta[c] * x); });
}

TensorTypes inferSoftmax(const Operands& operands)
{
    const TensorView& x = realTensor(operands, "x");
    axisOperand(operands, "axis", -1, x.type.shape.size());
    return { x.type };
}

void evaluateSoftmax(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const auto from = x.reals();
    const auto to = outputs[0].reals();
    const Grouping rows = grouped(x.type.shape, axisOperand(operands, "axis", -1, x.type.shape.size()));
    rows.forEachOther([&](int64_t base) {
        float highest = -std::numeric_limits<float>::infinity();
        rows.forEachAlong(base, [&](int64_t at) { highest = std::max(highest, from[at]); });
        float sum = 0;
        rows.forEachAlong(base, [&](int64_t at) { sum += to[at] = std::exp(from[at] - highest); });
        rows.forEachAlong(base, [&](int64_t at) { to[at] /= sum; });
    });
}

constexpr OperationDefinition definitions[] = {
    { "clamped_relu", inferScaled<ClampedRelu>, evaluateScaled<ClampedRelu> },
    { "elu", inferScaled<Elu>, evaluateScaled<Elu> },
    { "gelu", inferGelu, evaluateGelu },
    { "leaky_relu", inferScaled<LeakyRelu>, evaluateScaled<LeakyRelu> },
    { "linear_activation", inferScaled<LinearActivation>, evaluateScaled<LinearActivation> },
    { "prelu", inferPrelu, evaluatePrelu },
    { "relu", inferPlain, evaluatePlain<reluOf> },
    { "relu6", inferPlain, evaluatePlain<relu6Of> },
    { "scaled_tanh", inferScaled<ScaledTanh>, evaluateScaled<ScaledTanh> },
    { "sigmoid", inferPlain, evaluatePlain<sigmoidOf> },
    { "sigmoid_hard", inferScaled<HardSigmoid>, evaluateScaled<HardSigmoid> },
    { "silu", inferPlain, evaluatePlain<siluOf> },
    { "softmax", inferSoftmax, evaluateSoftmax },
    { "softplus", inferPlain, evaluatePlain<softplusOf> },
    { "softplus_parametric", inferParametricSoftplus, evaluateParametricSoftplus },
    { "softsign", inferPlain, evaluatePlain<softsignOf> },
    { "thresholded_relu", inferScaled<ThresholdedRelu>, evaluateScaled<ThresholdedRelu> },
};

} // namespace

Definitions activations() noexcept
{
    return definitions;
}

} // namespace MLProgram
