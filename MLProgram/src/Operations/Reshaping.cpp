// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations that give the same elements, in the same order, another shape.
#include "Operations/Definitions.h"
#include "Operations/Iteration.h"

#include <algorithm>

namespace MLProgram {

namespace {

constexpr int inferredDimension = -1;
constexpr int copiedDimension = 0;

// From this opset on, dimensions to copy are counted from the right.
constexpr int opsetThatAlignsRight = 17;

int64_t dimensionToCopy(const Operands& operands, const Shape& shape, size_t index, size_t targetRank)
{
    if (operands.opset() < opsetThatAlignsRight) {
        operands.require(shape.size() == targetRank, "a dimension can be copied only to a shape of the same rank");
        return shape[index];
    }
    const size_t fromRight = targetRank - index;
    return fromRight > shape.size() ? 1 : shape[shape.size() - fromRight];
}

TensorTypes inferReshape(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    const auto listed = operands.integers("shape");
    operands.require(listed.size() <= maximumRank, "its output has too many dimensions");
    Shape shape;
    int64_t* inferred = nullptr;
    for (size_t i = 0; i < listed.size(); ++i) {
        shape.push_back(
            listed[i] == copiedDimension ? dimensionToCopy(operands, x.shape, i, listed.size()) : listed[i]);
        if (listed[i] == inferredDimension) {
            operands.require(inferred == nullptr, "two dimensions are left to infer");
            inferred = &shape.back();
            *inferred = 1;
        }
    }
    TensorType type = outputType(operands, x.element, shape);
    const int64_t count = elementCount(x.shape);
    const int64_t told = elementCount(shape);
    if (inferred != nullptr && told != 0)
        type.shape[static_cast<size_t>(inferred - shape.data())] = count / told;
    operands.require(elementCount(type.shape) == count, "the shape has another number of elements");
    return { type };
}

// One number of a list that holds a scalar for each reference tensor.
int64_t numberOf(const Operands& operands, std::string_view list, size_t index)
{
    const auto scalars = operands.tensors(list);
    operands.require(index < scalars.size() && scalars[index].count() == 1, "its lists do not match");
    if (!scalars[index].isKnown())
        throw ValueNotKnown {};
    if (scalars[index].type.element == ElementType::boolean)
        return scalars[index].booleans()[0];
    operands.require(scalars[index].type.element == ElementType::integer, "its bounds must be integers");
    return scalars[index].integers()[0];
}

size_t clampedBound(int64_t bound, size_t rank)
{
    const auto most = static_cast<int64_t>(rank);
    return static_cast<size_t>(std::clamp<int64_t>(bound < 0 ? bound + most : bound, 0, most));
}

TensorTypes inferReshapeLike(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    const auto references = operands.tensors("ref_tensors");
    Shape shape;
    for (size_t i = 0; i < references.size(); ++i) {
        const Shape& reference = references[i].type.shape;
        const size_t begin = clampedBound(numberOf(operands, "begins", i), reference.size());
        const size_t end = numberOf(operands, "end_masks", i) != 0
            ? reference.size()
            : clampedBound(numberOf(operands, "ends", i), reference.size());
        shape = joined(operands, shape, slice(reference, begin, std::max(begin, end)));
    }
    const TensorType type = outputType(operands, x.element, shape);
    operands.require(elementCount(shape) == elementCount(x.shape), "the shape has another number of elements");
    return { type };
}

TensorTypes inferExpandDims(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    const size_t rank = x.shape.size() + operands.integers("axes").size();
    operands.require(rank <= maximumRank, "its output has too many dimensions");
    const AxisSet added = axesOperand(operands, "axes", rank);
    Shape shape;
    auto old = x.shape.begin();
    for (size_t i = 0; i < rank; ++i)
        shape.push_back(added.contains(i) ? 1 : *old++);
    return { { x.element, shape } };
}

TensorTypes inferSqueeze(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    const bool all = !operands.has("axes");
    const AxisSet axes = axesOperand(operands, "axes", x.shape.size());
    Shape shape;
    for (size_t i = 0; i < x.shape.size(); ++i) {
        const bool dropped = axes.contains(i) && (!all || x.shape[i] == 1);
        operands.require(!dropped || x.shape[i] == 1, "only dimensions of 1 can be dropped");
        if (!dropped)
            shape.push_back(x.shape[i]);
    }
    return { { x.element, shape } };
}

TensorTypes inferFlatten2d(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    const auto rank = static_cast<int64_t>(x.shape.size());
    const int64_t axis = operands.integer("axis", 1);
    operands.require(axis >= -rank && axis <= rank, "its axis is not one of the tensor's");
    const auto split = static_cast<size_t>(axis < 0 ? axis + rank : axis);
    return { outputType(
        operands, x.element, { countBetween(x.shape, 0, split), countBetween(x.shape, split, x.shape.size()) }) };
}

void evaluateCopy(const Operands& operands, std::span<const TensorView> outputs)
{
    copyAll(operands.tensor("x"), outputs[0]);
}

TensorTypes inferShape(const Operands& operands)
{
    return { { ElementType::integer, { static_cast<int64_t>(operands.tensor("x").type.shape.size()) } } };
}

void evaluateShape(const Operands& operands, std::span<const TensorView> outputs)
{
    std::ranges::transform(operands.tensor("x").type.shape, outputs[0].integers().begin(),
        [](int64_t dimension) { return static_cast<int32_t>(dimension); });
}

constexpr OperationDefinition definitions[] = {
    { "expand_dims", inferExpandDims, evaluateCopy },
    { "flatten2d", inferFlatten2d, evaluateCopy },
    { "reshape", inferReshape, evaluateCopy },
    { "reshape_like", inferReshapeLike, evaluateCopy },
    { "shape", inferShape, evaluateShape },
    { "squeeze", inferSqueeze, evaluateCopy },
};

} // namespace

Definitions reshapings() noexcept
{
    return definitions;
}

} // namespace MLProgram
