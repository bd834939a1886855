// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations that compare or accumulate along one axis.
#include "Operations/Definitions.h"
#include "Operations/ElementNames.h"
#include "Operations/Iteration.h"
#include "Operations/Numbers.h"
#include "Operations/Scratch.h"
#include "Operations/Shapes.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>

namespace MLProgram {

namespace {

// NaN counts as larger than every number, so that any values have an order.
bool isLess(float x, float y)
{
    return std::isnan(y) ? !std::isnan(x) : x < y;
}

bool isLess(int32_t x, int32_t y)
{
    return x < y;
}

enum class Order { ascending, descending };

template <typename T> bool comesBefore(Order order, T x, T y)
{
    return order == Order::ascending ? isLess(x, y) : isLess(y, x);
}

Order orderOperand(const Operands& operands)
{
    return operands.flag("ascending", false) ? Order::ascending : Order::descending;
}

// Calls body with a value of the C++ type of the numbers in `tensor`.
template <typename Body> void withNumberType(const TensorView& tensor, Body&& body)
{
    tensor.type.element == ElementType::real ? body(float {}) : body(int32_t {});
}

// The places 0 .. size-1 along an axis, the first `count` of them in the order of the values that stand there; equal
// values keep their places' order. `valueAt` gives the value at a place.
template <typename ValueAt>
std::span<const int32_t> orderedPlaces(int64_t size, int64_t count, Order order, ValueAt&& valueAt)
{
    const std::span<int32_t> places = scratchRow<int32_t>(static_cast<size_t>(size));
    std::iota(places.begin(), places.end(), 0);
    std::partial_sort(places.begin(), places.begin() + count, places.end(), [&](int32_t a, int32_t b) {
        const auto x = valueAt(a);
        const auto y = valueAt(b);
        return comesBefore(order, x, y) || (!comesBefore(order, y, x) && a < b);
    });
    return places.first(static_cast<size_t>(count));
}

TensorTypes inferArgsort(const Operands& operands)
{
    const TensorType& x = numericTensor(operands, "x").type;
    axisOperand(operands, "axis", -1, x.shape.size());
    orderOperand(operands);
    return { { ElementType::integer, x.shape } };
}

void evaluateArgsort(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const Shape& shape = x.type.shape;
    const size_t axis = axisOperand(operands, "axis", -1, shape.size());
    const Order order = orderOperand(operands);
    const Grouping rows = grouped(shape, axis);
    const int64_t stride = rows.alongStrides[0];
    withNumberType(x, [&](auto zero) {
        const auto from = x.values<const decltype(zero)>();
        const auto to = outputs[0].integers();
        rows.forEachOther([&](int64_t base) {
            const auto valueAt = [&](int64_t place) { return from[base + place * stride]; };
            int64_t at = base;
            for (const int32_t place : orderedPlaces(shape[axis], shape[axis], order, valueAt)) {
                to[at] = place;
                at += stride;
            }
        });
    });
}

// How many values topk keeps; -1 asks for all of them.
int64_t keptCount(const Operands& operands, int64_t size)
{
    const int64_t count = operands.integer("k", 1);
    operands.require(count >= -1 && count <= size, "\"k\" is not a number of values that there are");
    return count == -1 ? size : count;
}

// Values, and unless "return_indices" is false, the places where they stood. They come in order even if "sort" does
// not ask for it.
TensorTypes inferTopk(const Operands& operands)
{
    const TensorType& x = numericTensor(operands, "x").type;
    const size_t axis = axisOperand(operands, "axis", -1, x.shape.size());
    orderOperand(operands);
    operands.flag("sort", true);
    integerNamed(operands, "output_indices_dtype", "int32");
    Shape shape = x.shape;
    shape[axis] = keptCount(operands, shape[axis]);
    if (!operands.flag("return_indices", true))
        return { { x.element, shape } };
    return { { x.element, shape }, { ElementType::integer, shape } };
}

void evaluateTopk(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const Shape& shape = x.type.shape;
    const size_t axis = axisOperand(operands, "axis", -1, shape.size());
    const Order order = orderOperand(operands);
    const NamedElement indexType = integerNamed(operands, "output_indices_dtype", "int32");
    const int64_t count = keptCount(operands, shape[axis]);
    const Grouping from = grouped(shape, axis);
    const Grouping to = grouped(outputs[0].type.shape, axis);
    const int64_t stride = from.alongStrides[0]; // of the output too
    withNumberType(x, [&](auto zero) {
        const auto values = x.values<const decltype(zero)>();
        const auto kept = outputs[0].values<decltype(zero)>();
        forEachOffset<2>(from.others, { from.otherStrides, to.otherStrides }, [&](const auto& bases) {
            const auto valueAt = [&](int64_t place) { return values[bases[0] + place * stride]; };
            int64_t at = bases[1];
            for (const int32_t place : orderedPlaces(shape[axis], count, order, valueAt)) {
                kept[at] = valueAt(place);
                if (outputs.size() > 1)
                    outputs[1].integers()[at] = indexType.saturated(place);
                at += stride;
            }
        });
    });
}

TensorTypes inferExtremePlace(const Operands& operands)
{
    const TensorType& x = numericTensor(operands, "x").type;
    const size_t axis = axisOperand(operands, "axis", -1, x.shape.size());
    integerNamed(operands, "output_dtype", "int32");
    operands.require(x.shape[axis] > 0, "it looks for a value along a dimension that is empty");
    Shape shape = x.shape;
    shape[axis] = 1;
    if (!operands.flag("keep_dims", false))
        shape.erase(shape.begin() + static_cast<std::ptrdiff_t>(axis));
    return { { ElementType::integer, shape } };
}

// The place of the value that comes first in the order; of equal ones, the first.
template <Order order> void evaluateExtremePlace(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const size_t axis = axisOperand(operands, "axis", -1, x.type.shape.size());
    const NamedElement indexType = integerNamed(operands, "output_dtype", "int32");
    const Grouping rows = grouped(x.type.shape, axis);
    withNumberType(x, [&](auto zero) {
        const auto from = x.values<const decltype(zero)>();
        auto to = outputs[0].integers().begin();
        rows.forEachOther([&](int64_t base) {
            int64_t best = base;
            rows.forEachAlong(base, [&](int64_t at) { best = comesBefore(order, from[at], from[best]) ? at : best; });
            *to++ = indexType.saturated(static_cast<double>((best - base) / rows.alongStrides[0]));
        });
    });
}

TensorTypes inferCumulativeSum(const Operands& operands)
{
    const TensorType& x = numericTensor(operands, "x").type;
    axisOperand(operands, "axis", 0, x.shape.size());
    operands.flag("exclusive", false);
    operands.flag("reverse", false);
    return { x };
}

float sumOf(float x, float y)
{
    return x + y;
}

int32_t sumOf(int32_t x, int32_t y)
{
    return wrapped(int64_t { x } + y);
}

// An exclusive sum does not count the value at its own place; a reverse one starts at the end.
void evaluateCumulativeSum(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const size_t axis = axisOperand(operands, "axis", 0, x.type.shape.size());
    const bool isExclusive = operands.flag("exclusive", false);
    const bool isReverse = operands.flag("reverse", false);
    const Grouping rows = grouped(x.type.shape, axis);
    const int64_t last = (x.type.shape[axis] - 1) * rows.alongStrides[0];
    withNumberType(x, [&](auto zero) {
        const auto from = x.values<const decltype(zero)>();
        const auto to = outputs[0].values<decltype(zero)>();
        rows.forEachOther([&](int64_t base) {
            auto sum = zero;
            rows.forEachAlong(0, [&](int64_t offset) {
                const int64_t at = base + (isReverse ? last - offset : offset);
                const auto next = sumOf(sum, from[at]);
                to[at] = isExclusive ? sum : next;
                sum = next;
            });
        });
    });
}

constexpr OperationDefinition definitions[] = {
    { "argsort", inferArgsort, evaluateArgsort },
    { "cumsum", inferCumulativeSum, evaluateCumulativeSum },
    { "reduce_argmax", inferExtremePlace, evaluateExtremePlace<Order::descending> },
    { "reduce_argmin", inferExtremePlace, evaluateExtremePlace<Order::ascending> },
    { "topk", inferTopk, evaluateTopk },
};

} // namespace

Definitions orderings() noexcept
{
    return definitions;
}

} // namespace MLProgram
