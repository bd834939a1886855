// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations that make tensors of numbers: constants, ranges, places.
#include "Operations/Definitions.h"
#include "Operations/Iteration.h"
#include "Operations/Numbers.h"

#include <algorithm>
#include <cmath>

namespace MLProgram {

namespace {

ElementType elementOf(const Operands& operands, std::string_view name, ElementType otherwise)
{
    const TensorView* const tensor = operands.optionalTensor(name);
    return tensor == nullptr ? otherwise : tensor->type.element;
}

// A scalar as T, without a loss when it is one.
template <typename T> T scalarAs(const Operands& operands, std::string_view name, T otherwise)
{
    if constexpr (std::is_same_v<T, float>)
        return operands.real(name, otherwise);
    else
        return static_cast<T>(operands.integer(name, otherwise));
}

// Without a value: zeros, which are real.
TensorTypes inferFilled(const Operands& operands, const Shape& shape)
{
    operands.real("value", 0);
    return { outputType(operands, elementOf(operands, "value", ElementType::real), shape) };
}

TensorTypes inferFill(const Operands& operands)
{
    const auto shape = operands.integers("shape");
    operands.require(shape.size() <= maximumRank, "its output has too many dimensions");
    return inferFilled(operands, { shape.begin(), shape.end() });
}

TensorTypes inferFillLike(const Operands& operands)
{
    return inferFilled(operands, operands.tensor("ref_tensor").type.shape);
}

void evaluateFill(const Operands& operands, std::span<const TensorView> outputs)
{
    withElementType(outputs[0].type.element,
        [&](auto zero) { std::ranges::fill(outputs[0].values<decltype(zero)>(), scalarAs(operands, "value", zero)); });
}

// start, start + step, ... before end.
TensorTypes inferRange(const Operands& operands)
{
    const ElementType element = numericTensor(operands, "start").type.element;
    operands.require(numericTensor(operands, "end").type.element == element
            && numericTensor(operands, "step").type.element == element,
        "its bounds are of different types");
    const bool isReal = element == ElementType::real;
    const auto value = [&](std::string_view name) {
        return isReal ? double { operands.real(name) } : static_cast<double>(operands.integer(name));
    };
    const double step = value("step");
    operands.require(step != 0, "its step is zero");
    const double count = std::ceil((value("end") - value("start")) / step);
    operands.require(count <= static_cast<double>(maximumElementCount), "its range is not finite or too long");
    return { { element, { static_cast<int64_t>(std::max(count, 0.0)) } } };
}

void evaluateRange(const Operands& operands, std::span<const TensorView> outputs)
{
    withNumberType(outputs[0].type.element, [&](auto zero) {
        using T = decltype(zero);
        const T start = scalarAs<T>(operands, "start", 0);
        const T step = scalarAs<T>(operands, "step", 0);
        const auto to = outputs[0].values<T>();
        for (size_t i = 0; i < to.size(); ++i)
            to[i] = multiplyAdd(start, static_cast<T>(i), step);
    });
}

size_t oneHotAxis(const Operands& operands)
{
    return axisOperand(operands, "axis", -1, operands.tensor("indices").type.shape.size() + 1);
}

TensorTypes inferOneHot(const Operands& operands)
{
    const Shape& shape = integerTensor(operands, "indices").type.shape;
    const ElementType element = elementOf(operands, "on_value", elementOf(operands, "off_value", ElementType::integer));
    operands.require(elementOf(operands, "off_value", element) == element, "its two values are of different types");
    operands.real("on_value", 1);
    operands.real("off_value", 0);
    const size_t axis = oneHotAxis(operands);
    const Shape front = joined(operands, slice(shape, 0, axis), { operands.integer("one_hot_vector_size") });
    return { outputType(operands, element, joined(operands, front, slice(shape, axis, shape.size()))) };
}

// An index that no place has gives a vector that is off everywhere.
void evaluateOneHot(const Operands& operands, std::span<const TensorView> outputs)
{
    const auto indices = operands.tensor("indices").integers();
    const Grouping vectors = grouped(outputs[0].type.shape, oneHotAxis(operands));
    withElementType(outputs[0].type.element, [&](auto zero) {
        using T = decltype(zero);
        const T on = scalarAs<T>(operands, "on_value", 1);
        const T off = scalarAs<T>(operands, "off_value", 0);
        const auto to = outputs[0].values<T>();
        size_t vector = 0;
        vectors.forEachOther([&](int64_t base) {
            int64_t place = 0;
            vectors.forEachAlong(base, [&](int64_t at) { to[at] = indices[vector] == place++ ? on : off; });
            ++vector;
        });
    });
}

// The length of the output follows from the values.
TensorTypes inferNonZero(const Operands& operands)
{
    const TensorView& x = operands.tensor("x");
    if (!x.isKnown())
        throw ValueNotKnown {};
    const auto found = withElementType(x.type.element, [&](auto zero) {
        const auto values = x.values<const decltype(zero)>();
        return std::ranges::count_if(values, [=](auto value) { return value != zero; });
    });
    return { outputType(operands, ElementType::integer, { found, static_cast<int64_t>(x.type.shape.size()) }) };
}

void evaluateNonZero(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const Shape& shape = x.type.shape;
    const Strides strides = rowMajorStrides(shape);
    auto to = outputs[0].integers().begin();
    withElementType(x.type.element, [&](auto zero) {
        const auto values = x.values<const decltype(zero)>();
        for (int64_t i = 0; i < x.count(); ++i)
            for (size_t d = 0; values[i] != zero && d < shape.size(); ++d)
                *to++ = static_cast<int32_t>(i / strides[d] % shape[d]);
    });
}

constexpr OperationDefinition definitions[] = {
    { "fill", inferFill, evaluateFill },
    { "fill_like", inferFillLike, evaluateFill },
    { "non_zero", inferNonZero, evaluateNonZero },
    { "one_hot", inferOneHot, evaluateOneHot },
    { "range_1d", inferRange, evaluateRange },
};

} // namespace

Definitions fillings() noexcept
{
    return definitions;
}

} // namespace MLProgram
