// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations that put tensors together along an axis, and take them apart.
#include "Operations/Definitions.h"
#include "Operations/Iteration.h"

namespace MLProgram {

namespace {

std::span<const TensorView> valuesOperand(const Operands& operands)
{
    const auto values = operands.tensors("values");
    operands.require(!values.empty(), "it has no tensors to work on");
    for (const TensorView& value : values) {
        operands.require(value.type.element == values[0].type.element, "its tensors hold elements of several types");
        operands.require(value.type.shape.size() == values[0].type.shape.size(), "its tensors differ in rank");
    }
    return values;
}

// Scalars are joined as if they were vectors of one element.
Shape atLeastVector(const Shape& shape)
{
    return shape.empty() ? Shape { 1 } : shape;
}

TensorTypes inferConcat(const Operands& operands)
{
    const auto values = valuesOperand(operands);
    Shape shape = atLeastVector(values[0].type.shape);
    const size_t axis = normalisedAxis(operands, operands.integer("axis"), shape.size());
    const bool interleave = operands.flag("interleave", false);
    int64_t length = 0;
    for (const TensorView& value : values) {
        const Shape own = atLeastVector(value.type.shape);
        for (size_t i = 0; i < shape.size(); ++i)
            operands.require(own[i] == shape[i] || (i == axis && !interleave), "the dimensions of its tensors differ");
        length += own[axis];
    }
    shape[axis] = length;
    return { outputType(operands, values[0].type.element, shape) };
}

void evaluateConcat(const Operands& operands, std::span<const TensorView> outputs)
{
    const auto values = operands.tensors("values");
    const Shape& shape = outputs[0].type.shape;
    const size_t axis = normalisedAxis(operands, operands.integer("axis"), shape.size());
    const bool interleave = operands.flag("interleave", false);
    const int64_t step = rowMajorStrides(shape)[axis];
    Walk writing { 0, rowMajorStrides(shape) };
    if (interleave)
        writing.strides[axis] *= static_cast<int64_t>(values.size());
    for (const TensorView& value : values) {
        const Shape own = atLeastVector(value.type.shape);
        copyElements(own, value, { 0, rowMajorStrides(own) }, outputs[0], writing);
        writing.start += interleave ? step : step * own[axis];
    }
}

TensorTypes inferSplit(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    const size_t axis = normalisedAxis(operands, operands.integer("axis"), x.shape.size());
    TensorTypes types;
    const auto add = [&](int64_t size) {
        Shape shape = x.shape;
        shape[axis] = size;
        types.push_back(outputType(operands, x.element, shape));
    };
    int64_t total = 0;
    if (const auto sizes = operands.optionalIntegers("split_sizes")) {
        for (const int32_t size : *sizes) {
            add(size);
            total += size;
        }
    } else {
        const int64_t parts = operands.integer("num_splits");
        operands.require(parts >= 1 && x.shape[axis] % parts == 0, "its axis cannot be split into equal parts");
        operands.require(parts <= std::max<int64_t>(1, x.shape[axis]), "it has more parts than elements");
        for (int64_t i = 0; i < parts; ++i)
            add(x.shape[axis] / parts);
        total = x.shape[axis];
    }
    operands.require(total == x.shape[axis], "the sizes of its parts do not add up to its axis");
    return types;
}

void evaluateSplit(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const size_t axis = normalisedAxis(operands, operands.integer("axis"), x.type.shape.size());
    Walk reading { 0, rowMajorStrides(x.type.shape) };
    for (const TensorView& part : outputs) {
        copyElements(part.type.shape, x, reading, part, { 0, rowMajorStrides(part.type.shape) });
        reading.start += reading.strides[axis] * part.type.shape[axis];
    }
}

TensorTypes inferStack(const Operands& operands)
{
    const auto values = valuesOperand(operands);
    for (const TensorView& value : values)
        operands.require(value.type.shape == values[0].type.shape, "the dimensions of its tensors differ");
    const Shape& own = values[0].type.shape;
    const size_t axis = normalisedAxis(operands, operands.integer("axis"), own.size() + 1);
    const Shape front = joined(operands, slice(own, 0, axis), { static_cast<int64_t>(values.size()) });
    return { outputType(operands, values[0].type.element, joined(operands, front, slice(own, axis, own.size()))) };
}

void evaluateStack(const Operands& operands, std::span<const TensorView> outputs)
{
    const auto values = operands.tensors("values");
    const Shape& own = values[0].type.shape;
    const size_t axis = normalisedAxis(operands, operands.integer("axis"), own.size() + 1);
    Walk writing { 0, rowMajorStrides(outputs[0].type.shape) };
    const int64_t step = writing.strides[axis];
    writing.strides.erase(writing.strides.begin() + static_cast<std::ptrdiff_t>(axis));
    for (const TensorView& value : values) {
        copyElements(own, value, { 0, rowMajorStrides(own) }, outputs[0], writing);
        writing.start += step;
    }
}

constexpr OperationDefinition definitions[] = {
    { "concat", inferConcat, evaluateConcat },
    { "split", inferSplit, evaluateSplit },
    { "stack", inferStack, evaluateStack },
};

} // namespace

Definitions joinings() noexcept
{
    return definitions;
}

} // namespace MLProgram
