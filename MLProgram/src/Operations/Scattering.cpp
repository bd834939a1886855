// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations that change parts of a tensor by index. An index that comes several times changes its part several
// times, in order.
#include "Operations/Definitions.h"
#include "Operations/Indexing.h"
#include "Operations/Numbers.h"
#include "Operations/Shapes.h"

#include <algorithm>
#include <string>

namespace MLProgram {

namespace {

// How an update meets the value that was there.
enum class Mode { add, divide, maximum, minimum, multiply, subtract, update };

constexpr std::pair<std::string_view, Mode> modes[] = {
    { "add", Mode::add },
    { "div", Mode::divide },
    { "max", Mode::maximum },
    { "min", Mode::minimum },
    { "mul", Mode::multiply },
    { "sub", Mode::subtract },
    { "update", Mode::update },
};

Mode modeOf(const Operands& operands)
{
    const std::string_view name = operands.text("mode", "add");
    for (const auto& [known, mode] : modes)
        if (known == name)
            return mode;
    operands.refuse("the mode \"" + std::string(name) + "\" is unknown");
}

float updated(Mode mode, float old, float update)
{
    switch (mode) {
    case Mode::add:
        return old + update;
    case Mode::divide:
        return old / update;
    case Mode::maximum:
        return std::max(old, update);
    case Mode::minimum:
        return std::min(old, update);
    case Mode::multiply:
        return old * update;
    case Mode::subtract:
        return old - update;
    case Mode::update:
        break;
    }
    return update;
}

// Wraps; an integer divided by zero gives zero.
int32_t updated(Mode mode, int32_t old, int32_t update)
{
    const int64_t wide = old;
    switch (mode) {
    case Mode::add:
        return wrapped(wide + update);
    case Mode::divide:
        return update == 0 ? 0 : wrapped(wide / update);
    case Mode::maximum:
        return std::max(old, update);
    case Mode::minimum:
        return std::min(old, update);
    case Mode::multiply:
        return wrapped(wide * update);
    case Mode::subtract:
        return wrapped(wide - update);
    case Mode::update:
        break;
    }
    return update;
}

// Checks what all of them share, and gives the type of the output: that of "data".
TensorTypes inferScattered(const Operands& operands, const Shape& updateShape)
{
    modeOf(operands);
    const TensorType& data = numericTensor(operands, "data").type;
    const TensorType& updates = operands.tensor("updates").type;
    operands.require(updates.element == data.element, "\"data\" and \"updates\" must hold elements of one type");
    operands.require(updates.shape == updateShape, "\"updates\" has not the shape that the other operands ask for");
    return { data };
}

// Copies "data" to the output, and lets body change it: body(to, updates) with pointers to the elements.
template <typename Body> void onCopyOfData(const Operands& operands, const TensorView& output, Body&& body)
{
    const auto change = [&](auto zero) {
        using T = decltype(zero);
        std::ranges::copy(operands.tensor("data").values<const T>(), output.values<T>().begin());
        body(output.values<T>().data(), operands.tensor("updates").values<const T>().data());
    };
    output.type.element == ElementType::real ? change(float {}) : change(int32_t {});
}

template <typename T> void updateRow(Mode mode, T* to, const T* updates, int64_t count)
{
    for (int64_t i = 0; i < count; ++i)
        to[i] = updated(mode, to[i], updates[i]);
}

// "updates" has the shape of "data" with the dimension `axis` replaced by those of "indices".
TensorTypes inferScatter(const Operands& operands)
{
    const Shape& data = operands.tensor("data").type.shape;
    const TensorView& indices = integerTensor(operands, "indices");
    const size_t axis = axisOperand(operands, "axis", 0, data.size());
    requirePositions(operands, indices, { &data[axis], 1 });
    const Shape front = joined(operands, slice(data, 0, axis), indices.type.shape);
    return inferScattered(operands, joined(operands, front, slice(data, axis + 1, data.size())));
}

// "data" is [outer, size, inner], "updates" [outer, indices, inner].
void evaluateScatter(const Operands& operands, std::span<const TensorView> outputs)
{
    const Mode mode = modeOf(operands);
    const Shape& shape = outputs[0].type.shape;
    const size_t axis = axisOperand(operands, "axis", 0, shape.size());
    const int64_t outer = countBetween(shape, 0, axis);
    const int64_t inner = countBetween(shape, axis + 1, shape.size());
    onCopyOfData(operands, outputs[0], [&](auto* to, const auto* updates) {
        for (int64_t o = 0; o < outer; ++o, to += shape[axis] * inner)
            for (const int32_t index : operands.tensor("indices").integers()) {
                updateRow(mode, to + positionOf(index, shape[axis]) * inner, updates, inner);
                updates += inner;
            }
    });
}

TensorTypes inferScatterAlongAxis(const Operands& operands)
{
    const Shape& data = operands.tensor("data").type.shape;
    const TensorView& indices = integerTensor(operands, "indices");
    requireAlignedIndices(operands, data, indices, axisOperand(operands, "axis", 0, data.size()));
    return inferScattered(operands, indices.type.shape);
}

// output[o, indices[o, k, i], i] takes updates[o, k, i], where o and i stand for the dimensions around the axis.
void evaluateScatterAlongAxis(const Operands& operands, std::span<const TensorView> outputs)
{
    const Mode mode = modeOf(operands);
    const Shape& shape = outputs[0].type.shape;
    const size_t axis = axisOperand(operands, "axis", 0, shape.size());
    onCopyOfData(operands, outputs[0], [&](auto* to, const auto* updates) {
        forEachAlignedIndex(
            operands.tensor("indices"), shape, axis, [&](int64_t at) { to[at] = updated(mode, to[at], *updates++); });
    });
}

// The last dimension of "indices" holds tuples, each of which addresses the leading dimensions of "data".
TensorTypes inferScatterTuples(const Operands& operands)
{
    const Shape& data = operands.tensor("data").type.shape;
    const TensorView& indices = integerTensor(operands, "indices");
    requireRank(operands, indices, 1);
    const Shape rest = addressedSlice(operands, data, indices, 0);
    const Shape tuples = slice(indices.type.shape, 0, indices.type.shape.size() - 1);
    return inferScattered(operands, joined(operands, tuples, rest));
}

void evaluateScatterTuples(const Operands& operands, std::span<const TensorView> outputs)
{
    const Mode mode = modeOf(operands);
    const Shape& shape = outputs[0].type.shape;
    const TensorView& indices = operands.tensor("indices");
    const Shape& indexShape = indices.type.shape;
    const auto width = static_cast<size_t>(indexShape.back());
    const Shape addressed = slice(shape, 0, width);
    const int64_t inner = countBetween(shape, width, shape.size());
    const int64_t tuples = countBetween(indexShape, 0, indexShape.size() - 1);
    onCopyOfData(operands, outputs[0], [&](auto* to, const auto* updates) {
        auto left = indices.integers();
        for (int64_t t = 0; t < tuples; ++t, left = left.subspan(width), updates += inner)
            updateRow(mode, to + sliceNumber(left.first(width), addressed) * inner, updates, inner);
    });
}

constexpr OperationDefinition definitions[] = {
    { "scatter", inferScatter, evaluateScatter },
    { "scatter_along_axis", inferScatterAlongAxis, evaluateScatterAlongAxis },
    { "scatter_nd", inferScatterTuples, evaluateScatterTuples },
};

} // namespace

Definitions scatterings() noexcept
{
    return definitions;
}

} // namespace MLProgram
