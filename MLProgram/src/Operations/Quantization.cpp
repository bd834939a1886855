// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations between real numbers and small integers: real = scale * (integer - zero point).
#include "Operations/Definitions.h"
#include "Operations/ElementNames.h"
#include "Operations/Shapes.h"

#include <cmath>

namespace MLProgram {

namespace {

// Scales and zero points: one for the whole tensor, or one for each position along an axis.
struct Steps {
    std::span<const float> scales;
    std::span<const int32_t> zeroPoints; // as many, or none for zeros
    int64_t repeats; // elements that follow each other with the same scale

    size_t stepOf(int64_t element) const noexcept { return static_cast<size_t>(element / repeats) % scales.size(); }
    float scale(int64_t element) const noexcept { return scales[stepOf(element)]; }
    int64_t zeroPoint(int64_t element) const noexcept { return zeroPoints.empty() ? 0 : zeroPoints[stepOf(element)]; }
};

// Refuses scales and zero points that do not fit the operand "input".
void checkSteps(const Operands& operands)
{
    const Shape& input = operands.tensor("input").type.shape;
    const Shape& scale = realTensor(operands, "scale").type.shape;
    optionalTensor(operands, "zero_point", { ElementType::integer, scale });
    if (scale.empty())
        return;
    const size_t axis = normalisedAxis(operands, operands.integer("axis"), input.size());
    operands.require(scale == Shape { input[axis] }, "\"scale\" is neither one number nor one for each position");
}

Steps stepsOf(const Operands& operands)
{
    const TensorView& scale = operands.tensor("scale");
    const TensorView* const zeroPoint = operands.optionalTensor("zero_point");
    const Shape& input = operands.tensor("input").type.shape;
    int64_t repeats = elementCount(input);
    if (!scale.type.shape.empty()) {
        const size_t axis = normalisedAxis(operands, operands.integer("axis"), input.size());
        repeats = countBetween(input, axis + 1, input.size());
    }
    return { scale.reals(), zeroPoint == nullptr ? std::span<const int32_t> {} : zeroPoint->integers(), repeats };
}

TensorTypes inferQuantize(const Operands& operands)
{
    const TensorView& input = realTensor(operands, "input");
    integerNamed(operands, "output_dtype", "int8");
    checkSteps(operands);
    return { { ElementType::integer, input.type.shape } };
}

// Rounds to the nearest, ties to even; what is out of the range of the integers becomes their nearest.
void evaluateQuantize(const Operands& operands, std::span<const TensorView> outputs)
{
    const NamedElement target = integerNamed(operands, "output_dtype", "int8");
    const Steps steps = stepsOf(operands);
    const auto from = operands.tensor("input").reals();
    const auto to = outputs[0].integers();
    for (int64_t i = 0; i < outputs[0].count(); ++i)
        to[i] = target.saturated(double { std::nearbyint(from[i] / steps.scale(i)) } + steps.zeroPoint(i));
}

TensorTypes inferDequantize(const Operands& operands)
{
    const TensorView& input = integerTensor(operands, "input");
    checkSteps(operands);
    return { { ElementType::real, input.type.shape } };
}

void evaluateDequantize(const Operands& operands, std::span<const TensorView> outputs)
{
    const Steps steps = stepsOf(operands);
    const auto from = operands.tensor("input").integers();
    const auto to = outputs[0].reals();
    for (int64_t i = 0; i < outputs[0].count(); ++i)
        to[i] = steps.scale(i) * static_cast<float>(from[i] - steps.zeroPoint(i));
}

constexpr OperationDefinition definitions[] = {
    { "dequantize", inferDequantize, evaluateDequantize },
    { "quantize", inferQuantize, evaluateQuantize },
};

} // namespace

Definitions quantizations() noexcept
{
    return definitions;
}

} // namespace MLProgram
