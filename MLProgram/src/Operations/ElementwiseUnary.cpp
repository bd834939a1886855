// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations on one tensor, element by element, with casts and selection.
#include "Operations/Definitions.h"
#include "Operations/ElementNames.h"
#include "Operations/Iteration.h"
#include "Operations/Numbers.h"

#include <algorithm>
#include <cmath>

namespace MLProgram {

namespace {

struct AbsoluteValue {
    static float of(float x) { return std::fabs(x); }
    static int32_t of(int32_t x) { return wrapped(x < 0 ? -int64_t { x } : x); }
};

// NaN stays NaN.
struct Sign {
    static float of(float x) { return x > 0 ? 1.0f : x < 0 ? -1.0f : x; }
    static int32_t of(int32_t x) { return x > 0 ? 1 : x < 0 ? -1 : 0; }
};

struct Square {
    static float of(float x) { return x * x; }
    static int32_t of(int32_t x) { return wrapped(int64_t { x } * x); }
};

struct Ceiling {
    static float of(float x) { return std::ceil(x); }
    static int32_t of(int32_t x) { return x; }
};

struct Floor {
    static float of(float x) { return std::floor(x); }
    static int32_t of(int32_t x) { return x; }
};

// To the nearest, ties to even: the rounding mode that every program starts with.
struct Round {
    static float of(float x) { return std::nearbyint(x); }
    static int32_t of(int32_t x) { return x; }
};

float acosOf(float x)
{
    return std::acos(x);
}
float asinOf(float x)
{
    return std::asin(x);
}
float atanOf(float x)
{
    return std::atan(x);
}
float atanhOf(float x)
{
    return std::atanh(x);
}
float cosOf(float x)
{
    return std::cos(x);
}
float coshOf(float x)
{
    return std::cosh(x);
}
float erfOf(float x)
{
    return std::erf(x);
}
float expOf(float x)
{
    return std::exp(x);
}
float exp2Of(float x)
{
    return std::exp2(x);
}
float sinOf(float x)
{
    return std::sin(x);
}
float sinhOf(float x)
{
    return std::sinh(x);
}
float sqrtOf(float x)
{
    return std::sqrt(x);
}
float tanOf(float x)
{
    return std::tan(x);
}
float tanhOf(float x)
{
    return std::tanh(x);
}

// The defaults that the operations below add to their operand before it meets a singular point.
constexpr float logEpsilon = 1e-45f;
constexpr float rsqrtEpsilon = 1e-12f;
constexpr float inverseEpsilon = 1e-4f;

TensorTypes inferNumber(const Operands& operands)
{
    return { numericTensor(operands, "x").type };
}

TensorTypes inferReal(const Operands& operands)
{
    return { realTensor(operands, "x").type };
}

TensorTypes inferWithEpsilon(const Operands& operands)
{
    operands.real("epsilon", 0);
    return inferReal(operands);
}

TensorTypes inferLogicalNot(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    operands.require(x.element == ElementType::boolean, "\"x\" must hold booleans");
    return { x };
}

template <typename Function> void evaluateNumber(const Operands& operands, std::span<const TensorView> outputs)
{
    if (outputs[0].type.element == ElementType::real)
        mapElements<float>(operands, outputs[0], [](float x) { return Function::of(x); });
    else
        mapElements<int32_t>(operands, outputs[0], [](int32_t x) { return Function::of(x); });
}

template <float (*function)(float)> void evaluateReal(const Operands& operands, std::span<const TensorView> outputs)
{
    mapElements<float>(operands, outputs[0], function);
}

void evaluateLog(const Operands& operands, std::span<const TensorView> outputs)
{
    const float epsilon = operands.real("epsilon", logEpsilon);
    mapElements<float>(operands, outputs[0], [=](float x) { return std::log(x + epsilon); });
}

void evaluateRsqrt(const Operands& operands, std::span<const TensorView> outputs)
{
    const float epsilon = operands.real("epsilon", rsqrtEpsilon);
    mapElements<float>(operands, outputs[0], [=](float x) { return 1.0f / std::sqrt(x + epsilon); });
}

void evaluateInverse(const Operands& operands, std::span<const TensorView> outputs)
{
    const float epsilon = operands.real("epsilon", inverseEpsilon);
    mapElements<float>(operands, outputs[0], [=](float x) { return 1.0f / (x + epsilon); });
}

void evaluateLogicalNot(const Operands& operands, std::span<const TensorView> outputs)
{
    mapElements<uint8_t>(operands, outputs[0], [](uint8_t x) { return static_cast<uint8_t>(x == 0); });
}

TensorTypes inferClip(const Operands& operands)
{
    operands.real("alpha");
    operands.real("beta");
    return inferNumber(operands);
}

void evaluateClip(const Operands& operands, std::span<const TensorView> outputs)
{
    const float low = operands.real("alpha");
    const float high = operands.real("beta");
    if (outputs[0].type.element == ElementType::real)
        mapElements<float>(operands, outputs[0], [=](float x) { return std::min(std::max(x, low), high); });
    else
        mapElements<int32_t>(operands, outputs[0],
            [=](int32_t x) { return saturated<int32_t>(std::min(std::max<double>(x, low), double { high })); });
}

TensorTypes inferThreshold(const Operands& operands)
{
    operands.real("alpha");
    return inferNumber(operands);
}

void evaluateThreshold(const Operands& operands, std::span<const TensorView> outputs)
{
    const float low = operands.real("alpha");
    if (outputs[0].type.element == ElementType::real)
        mapElements<float>(operands, outputs[0], [=](float x) { return std::max(x, low); });
    else
        mapElements<int32_t>(
            operands, outputs[0], [=](int32_t x) { return saturated<int32_t>(std::max<double>(x, low)); });
}

TensorTypes inferCast(const Operands& operands)
{
    return { { elementNamed(operands, "dtype").element, operands.tensor("x").type.shape } };
}

void evaluateCast(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const NamedElement target = elementNamed(operands, "dtype");
    withElementType(x.type.element, [&](auto zero) {
        const auto from = x.values<const decltype(zero)>();
        switch (target.element) {
        case ElementType::real:
            std::ranges::transform(
                from, outputs[0].reals().begin(), [](auto value) { return static_cast<float>(value); });
            break;
        case ElementType::integer:
            std::ranges::transform(
                from, outputs[0].integers().begin(), [&](auto value) { return target.saturated(value); });
            break;
        case ElementType::boolean:
            std::ranges::transform(
                from, outputs[0].booleans().begin(), [](auto value) { return static_cast<uint8_t>(value != 0); });
            break;
        }
    });
}

TensorTypes inferSelect(const Operands& operands)
{
    const TensorType& condition = operands.tensor("cond").type;
    const TensorType& a = operands.tensor("a").type;
    const TensorType& b = operands.tensor("b").type;
    operands.require(condition.element == ElementType::boolean, "\"cond\" must hold booleans");
    operands.require(a.element == b.element, "\"a\" and \"b\" must hold elements of one type");
    const Shape shape = broadcastShape(operands, condition.shape, broadcastShape(operands, a.shape, b.shape));
    return { outputType(operands, a.element, shape) };
}

// Takes one side or the other: what stands on the side not taken, be it NaN, has no part in the result.
void evaluateSelect(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& condition = operands.tensor("cond");
    const TensorView& a = operands.tensor("a");
    const TensorView& b = operands.tensor("b");
    const Shape& shape = outputs[0].type.shape;
    withElementType(outputs[0].type.element, [&](auto zero) {
        using T = decltype(zero);
        const auto chooses = condition.booleans();
        const auto first = a.values<const T>();
        const auto second = b.values<const T>();
        auto to = outputs[0].values<T>().begin();
        forEachOffset<3>(shape,
            { broadcastStrides(condition.type.shape, shape), broadcastStrides(a.type.shape, shape),
                broadcastStrides(b.type.shape, shape) },
            [&](const auto& at) { *to++ = chooses[at[0]] != 0 ? first[at[1]] : second[at[2]]; });
    });
}

TensorTypes inferIdentity(const Operands& operands)
{
    return { operands.tensor("x").type };
}

void evaluateIdentity(const Operands& operands, std::span<const TensorView> outputs)
{
    copyAll(operands.tensor("x"), outputs[0]);
}

constexpr OperationDefinition definitions[] = {
    { "abs", inferNumber, evaluateNumber<AbsoluteValue> },
    { "acos", inferReal, evaluateReal<acosOf> },
    { "asin", inferReal, evaluateReal<asinOf> },
    { "atan", inferReal, evaluateReal<atanOf> },
    { "atanh", inferReal, evaluateReal<atanhOf> },
    { "cast", inferCast, evaluateCast },
    { "ceil", inferNumber, evaluateNumber<Ceiling> },
    { "clip", inferClip, evaluateClip },
    { "cos", inferReal, evaluateReal<cosOf> },
    { "cosh", inferReal, evaluateReal<coshOf> },
    { "erf", inferReal, evaluateReal<erfOf> },
    { "exp", inferReal, evaluateReal<expOf> },
    { "exp2", inferReal, evaluateReal<exp2Of> },
    { "floor", inferNumber, evaluateNumber<Floor> },
    { "identity", inferIdentity, evaluateIdentity },
    { "inverse", inferWithEpsilon, evaluateInverse },
    { "log", inferWithEpsilon, evaluateLog },
    { "logical_not", inferLogicalNot, evaluateLogicalNot },
    { "round", inferNumber, evaluateNumber<Round> },
    { "rsqrt", inferWithEpsilon, evaluateRsqrt },
    { "select", inferSelect, evaluateSelect },
    { "sign", inferNumber, evaluateNumber<Sign> },
    { "sin", inferReal, evaluateReal<sinOf> },
    { "sinh", inferReal, evaluateReal<sinhOf> },
    { "sqrt", inferReal, evaluateReal<sqrtOf> },
    { "square", inferNumber, evaluateNumber<Square> },
    { "tan", inferReal, evaluateReal<tanOf> },
    { "tanh", inferReal, evaluateReal<tanhOf> },
    { "threshold", inferThreshold, evaluateThreshold },
};

} // namespace

Definitions elementwiseUnaries() noexcept
{
    return definitions;
}

} // namespace MLProgram
