// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations that move data: most become views and cost nothing.
#include "Plan/Lowering.h"

#include <algorithm>

namespace MLProgram {

namespace {

ValueIndex x(const GraphNode& node)
{
    return node.argument("x")->values.front();
}

bool lowerIdentity(Lowering& lowering, const GraphNode& node)
{
    lowering.define(node.outputs.front(), lowering.view(x(node)));
    return true;
}

bool lowerTranspose(Lowering& lowering, const GraphNode& node)
{
    const Operands operands = lowering.graph().operandsOf(node);
    lowering.define(node.outputs.front(), transposed(lowering.view(x(node)), operands.integers("perm")));
    return true;
}

// reshape and its relatives: the new shape is the output's, which is known already.
bool lowerReshape(Lowering& lowering, const GraphNode& node)
{
    const ValueIndex output = node.outputs.front();
    const Shape& shape = lowering.graph().type(output).shape;
    auto view = reshaped(lowering.view(x(node)), shape);
    if (!view)
        view = reshaped(lowering.denseView(x(node)), shape);
    lowering.define(output, *view);
    return true;
}

bool lowerSplit(Lowering& lowering, const GraphNode& node)
{
    const View whole = lowering.view(x(node));
    const int64_t axis = lowering.graph().operandsOf(node).integer("axis");
    const auto dimension = static_cast<size_t>(axis < 0 ? axis + static_cast<int64_t>(whole.shape.size()) : axis);
    int64_t first = 0;
    for (const ValueIndex output : node.outputs) {
        const int64_t count = lowering.graph().type(output).shape[dimension];
        lowering.define(output, narrowed(whole, dimension, first, count));
        first += count;
    }
    return true;
}

bool isSet(std::optional<std::span<const uint8_t>> mask, size_t dimension)
{
    return mask && (*mask)[dimension] != 0;
}

// The index at which a slice begins, after masks, negative counts and limits.
int64_t sliceStart(int64_t begin, int64_t stride, int64_t count, bool isOpen)
{
    if (isOpen)
        return stride > 0 ? 0 : count - 1;
    const int64_t index = begin < 0 ? begin + count : begin;
    return stride > 0 ? std::clamp<int64_t>(index, 0, count) : std::clamp<int64_t>(index, -1, count - 1);
}

bool lowerSliceByIndex(Lowering& lowering, const GraphNode& node)
{
    const Operands operands = lowering.graph().operandsOf(node);
    const View whole = lowering.view(x(node));
    const auto begin = operands.integers("begin");
    const auto strides = operands.optionalIntegers("stride");
    const auto beginMask = operands.optionalFlags("begin_mask");
    const auto squeezeMask = operands.optionalFlags("squeeze_mask");
    const Shape& shape = lowering.graph().type(node.outputs.front()).shape;
    View part = whole;
    size_t output = 0;
    for (size_t i = 0; i < whole.shape.size(); ++i) {
        const bool isSqueezed = isSet(squeezeMask, i);
        const int64_t stride = strides && !isSqueezed ? (*strides)[i] : 1;
        const bool isOpen = isSet(beginMask, i) && !isSqueezed;
        const int64_t first = sliceStart(begin[i], stride, whole.shape[i], isOpen);
        part = narrowed(part, i, first, isSqueezed ? 1 : shape[output], stride);
        output += isSqueezed ? 0 : 1;
    }
    lowering.define(node.outputs.front(), *reshaped(part, shape));
    return true;
}

bool lowerSliceBySize(Lowering& lowering, const GraphNode& node)
{
    const Operands operands = lowering.graph().operandsOf(node);
    View part = lowering.view(x(node));
    const auto begin = operands.integers("begin");
    const Shape& shape = lowering.graph().type(node.outputs.front()).shape;
    for (size_t i = 0; i < part.shape.size(); ++i) {
        const int64_t first = begin[i] < 0 ? begin[i] + part.shape[i] : begin[i];
        part = narrowed(part, i, first, shape[i]);
    }
    lowering.define(node.outputs.front(), part);
    return true;
}

// The parts are copied side by side, in the memory order of the first.
bool lowerConcat(Lowering& lowering, const GraphNode& node)
{
    const Operands operands = lowering.graph().operandsOf(node);
    const auto& values = node.argument("values")->values;
    const TensorType& type = lowering.graph().type(node.outputs.front());
    const bool hasScalars = std::ranges::any_of(
        values, [&](ValueIndex value) { return lowering.graph().type(value).shape.size() != type.shape.size(); });
    if (operands.flag("interleave", false) || hasScalars)
        return false;
    const int64_t axis = operands.integer("axis");
    const auto dimension = static_cast<size_t>(axis < 0 ? axis + static_cast<int64_t>(type.shape.size()) : axis);
    const Shape candidates[]
        = { orderedStrides(type.shape, memoryOrder(lowering.view(values.front()))), denseStrides(type.shape) };
    const View whole
        = lowering.newView(type.element, type.shape, lowering.bestStrides(node.outputs.front(), candidates));
    int64_t first = 0;
    for (const ValueIndex value : values) {
        const View part = lowering.view(value);
        lowering.emitReorder(part, narrowed(whole, dimension, first, part.shape[dimension]));
        first += part.shape[dimension];
    }
    lowering.define(node.outputs.front(), whole);
    return true;
}

// The whole is filled with the constant, then the operand is copied to its place.
bool lowerPad(Lowering& lowering, const GraphNode& node)
{
    const Operands operands = lowering.graph().operandsOf(node);
    const View inner = lowering.view(x(node));
    if (operands.text("mode", "constant") != "constant" || inner.element != ElementType::real)
        return false;
    const auto pad = operands.integers("pad");
    const Shape& shape = lowering.graph().type(node.outputs.front()).shape;
    const View whole = lowering.newView(inner.element, shape, denseStrides(shape));
    View target = whole;
    const size_t padded = pad.size() / 2;
    for (size_t i = 0; i < padded; ++i) {
        const size_t dimension = shape.size() - padded + i;
        if (pad[2 * i] < 0 || pad[2 * i + 1] < 0)
            return false;
        target = narrowed(target, dimension, pad[2 * i], inner.shape[dimension]);
    }
    const View value = broadcast(lowering.number(operands.real("constant_val", 0)), shape);
    lowering.emitMap({ shape, { value }, {}, nullptr }, whole);
    lowering.emitReorder(inner, target);
    lowering.define(node.outputs.front(), whole);
    return true;
}

constexpr LoweringRule rules[] = {
    { "concat", lowerConcat },
    { "expand_dims", lowerReshape },
    { "flatten2d", lowerReshape },
    { "identity", lowerIdentity },
    { "pad", lowerPad },
    { "reshape", lowerReshape },
    { "slice_by_index", lowerSliceByIndex },
    { "slice_by_size", lowerSliceBySize },
    { "split", lowerSplit },
    { "squeeze", lowerReshape },
    { "transpose", lowerTranspose },
};

} // namespace

std::span<const LoweringRule> movementRules() noexcept
{
    return rules;
}

} // namespace MLProgram
