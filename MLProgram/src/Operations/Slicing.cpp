// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations that take, or replace, a regular part of a tensor.
#include "Operations/Definitions.h"
#include "Operations/Iteration.h"

#include <algorithm>

namespace MLProgram {

namespace {

// A part of a tensor: how many elements along each dimension, and the way through them.
struct Part {
    Shape counts;
    Walk walk;
    AxisSet dropped; // dimensions that the result does not have; they have one element

    Shape shape() const
    {
        Shape shape;
        for (size_t i = 0; i < counts.size(); ++i)
            if (!dropped.contains(i))
                shape.push_back(counts[i]);
        return shape;
    }

    // The steps through a dense tensor of shape(), for each dimension of counts. Those that are dropped have one
    // element, so that they do not change the steps of the others.
    Strides denseStrides() const { return rowMajorStrides(counts); }
};

// A flag for each dimension, or none.
AxisSet mask(const Operands& operands, std::string_view name, size_t rank)
{
    const auto flags = operands.optionalFlags(name);
    AxisSet axes;
    if (!flags)
        return axes;
    operands.require(flags->size() == rank, "a mask does not have a flag for each dimension");
    for (size_t i = 0; i < rank; ++i)
        axes.bits |= ((*flags)[i] != 0 ? 1u : 0u) << i;
    return axes;
}

// A bound counted from the front; whatever lies outside becomes the nearest of [lowest, highest].
int64_t clampedBound(int64_t bound, int64_t length, int64_t lowest, int64_t highest)
{
    return std::clamp(bound < 0 ? bound + length : bound, lowest, highest);
}

struct Range {
    int64_t first, count;
};

// The elements begin, begin + stride, ... before `end`; an open bound reaches as far as the stride goes.
Range rangeOf(int64_t length, int64_t begin, int64_t end, int64_t stride, bool openBegin, bool openEnd)
{
    const int64_t lowest = stride > 0 ? 0 : -1;
    const int64_t highest = stride > 0 ? length : length - 1;
    const int64_t first = openBegin ? (stride > 0 ? 0 : length - 1) : clampedBound(begin, length, lowest, highest);
    const int64_t last = openEnd ? (stride > 0 ? length : -1) : clampedBound(end, length, lowest, highest);
    const int64_t distance = stride > 0 ? last - first : first - last;
    const int64_t step = stride > 0 ? stride : -stride;
    return { first, distance <= 0 ? 0 : (distance + step - 1) / step };
}

Part indexedPart(const Operands& operands)
{
    const Shape& shape = operands.tensor("x").type.shape;
    const auto begin = operands.integers("begin");
    const auto end = operands.integers("end");
    const auto stride = operands.optionalIntegers("stride");
    operands.require(
        begin.size() == shape.size() && end.size() == shape.size() && (!stride || stride->size() == shape.size()),
        "it does not have bounds for each dimension");
    const AxisSet openBegin = mask(operands, "begin_mask", shape.size());
    const AxisSet openEnd = mask(operands, "end_mask", shape.size());
    Part part { {}, { 0, rowMajorStrides(shape) }, mask(operands, "squeeze_mask", shape.size()) };
    for (size_t i = 0; i < shape.size(); ++i) {
        const int64_t step = stride ? (*stride)[i] : 1;
        operands.require(step != 0, "a stride is zero");
        Range range = rangeOf(shape[i], begin[i], end[i], step, openBegin.contains(i), openEnd.contains(i));
        if (part.dropped.contains(i)) {
            const int64_t index = begin[i] < 0 ? begin[i] + shape[i] : begin[i];
            operands.require(index >= 0 && index < shape[i], "it takes an element that does not exist");
            range = { index, 1 };
        }
        part.counts.push_back(range.count);
        part.walk.start += range.count == 0 ? 0 : range.first * part.walk.strides[i];
        part.walk.strides[i] *= range.count <= 1 ? 1 : step;
    }
    return part;
}

Part sizedPart(const Operands& operands)
{
    const Shape& shape = operands.tensor("x").type.shape;
    const auto begin = operands.integers("begin");
    const auto size = operands.integers("size");
    operands.require(
        begin.size() == shape.size() && size.size() == shape.size(), "it does not have bounds for each dimension");
    Part part { {}, { 0, rowMajorStrides(shape) }, {} };
    for (size_t i = 0; i < shape.size(); ++i) {
        const int64_t first = begin[i] < 0 ? begin[i] + shape[i] : begin[i];
        operands.require(first >= 0 && first <= shape[i], "it begins outside of the tensor");
        const int64_t count = size[i] == -1 ? shape[i] - first : size[i];
        operands.require(count >= 0 && count <= shape[i] - first, "it ends outside of the tensor");
        part.counts.push_back(count);
        part.walk.start += first * part.walk.strides[i];
    }
    return part;
}

template <Part (*partOf)(const Operands&)> TensorTypes infer(const Operands& operands)
{
    return { outputType(operands, operands.tensor("x").type.element, partOf(operands).shape()) };
}

template <Part (*partOf)(const Operands&)> void evaluate(const Operands& operands, std::span<const TensorView> outputs)
{
    const Part part = partOf(operands);
    copyElements(part.counts, operands.tensor("x"), part.walk, outputs[0], { 0, part.denseStrides() });
}

TensorTypes inferUpdate(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    const TensorType& update = operands.tensor("update").type;
    operands.require(update.element == x.element, "\"x\" and \"update\" hold elements of different types");
    operands.require(update.shape == indexedPart(operands).shape(), "\"update\" does not have the shape of the part");
    return { x };
}

void evaluateUpdate(const Operands& operands, std::span<const TensorView> outputs)
{
    const Part part = indexedPart(operands);
    copyAll(operands.tensor("x"), outputs[0]);
    copyElements(part.counts, operands.tensor("update"), { 0, part.denseStrides() }, outputs[0], part.walk);
}

constexpr OperationDefinition definitions[] = {
    { "slice_by_index", infer<indexedPart>, evaluate<indexedPart> },
    { "slice_by_size", infer<sizedPart>, evaluate<sizedPart> },
    { "slice_update", inferUpdate, evaluateUpdate },
};

} // namespace

Definitions slicings() noexcept
{
    return definitions;
}

} // namespace MLProgram
