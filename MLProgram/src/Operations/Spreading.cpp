// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations whose every element is one element of the operand, found dimension by dimension: padding, repetition,
// reversal, overlapping windows.
#include "Operations/Definitions.h"
#include "Operations/Iteration.h"
#include "Operations/Numbers.h"

#include <algorithm>

namespace MLProgram {

namespace {

// Which index of a dimension of `length` elements stands at place `at`, which counts from the dimension's beginning
// and may lie outside; -1 for none.
using Place = int64_t (*)(int64_t at, int64_t length);

int64_t constantPlace(int64_t at, int64_t length)
{
    return at >= 0 && at < length ? at : -1;
}

// Mirrored at the edge, which is not repeated.
int64_t reflectedPlace(int64_t at, int64_t length)
{
    return at < 0 ? -at : at < length ? at : 2 * (length - 1) - at;
}

int64_t replicatedPlace(int64_t at, int64_t length)
{
    return std::clamp<int64_t>(at, 0, length - 1);
}

struct PadMode {
    std::string_view name;
    Place place;
};
constexpr PadMode padModes[] = {
    { "constant", constantPlace },
    { "reflect", reflectedPlace },
    { "replicate", replicatedPlace },
};

struct Padding {
    Place place;
    Shape before, after; // for each dimension
};

Padding paddingOf(const Operands& operands)
{
    const Shape& shape = operands.tensor("x").type.shape;
    const auto pads = operands.integers("pad");
    operands.require(pads.size() % 2 == 0 && pads.size() / 2 <= shape.size(),
        "\"pad\" does not have two numbers for each of the last dimensions");
    const auto* const mode = std::ranges::find(padModes, operands.text("mode", "constant"), &PadMode::name);
    operands.require(mode != std::end(padModes), "its mode is unknown");
    Padding padding { mode->place, Shape(shape.size(), 0), Shape(shape.size(), 0) };
    const size_t first = shape.size() - pads.size() / 2;
    for (size_t i = first; i < shape.size(); ++i) {
        const int64_t before = padding.before[i] = pads[2 * (i - first)];
        const int64_t after = padding.after[i] = pads[2 * (i - first) + 1];
        operands.require(before >= 0 && after >= 0, "a dimension cannot be padded by a negative number");
        operands.require(padding.place != reflectedPlace || std::max(before, after) < std::max<int64_t>(shape[i], 1),
            "a dimension is too short to be reflected");
        operands.require(padding.place != replicatedPlace || shape[i] > 0 || before + after == 0,
            "a dimension without elements has no edge");
    }
    return padding;
}

TensorTypes inferPad(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    const Padding padding = paddingOf(operands);
    operands.real("constant_val", 0);
    Shape shape = x.shape;
    for (size_t i = 0; i < shape.size(); ++i)
        shape[i] += padding.before[i] + padding.after[i];
    return { outputType(operands, x.element, shape) };
}

// Calls visit with the index of each element of `shape`, in row-major order.
template <typename Visit> void forEachIndex(const Shape& shape, Visit visit)
{
    const Strides strides = rowMajorStrides(shape);
    Shape index(shape.size(), 0);
    for (int64_t i = 0, count = elementCount(shape); i < count; ++i) {
        for (size_t d = 0; d < shape.size(); ++d)
            index[d] = i / strides[d] % shape[d];
        visit(index);
    }
}

void evaluatePad(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const Padding padding = paddingOf(operands);
    const Strides strides = rowMajorStrides(x.type.shape);
    withElementType(x.type.element, [&](auto zero) {
        using T = decltype(zero);
        const auto from = x.values<const T>();
        const auto outside = static_cast<T>(x.type.element == ElementType::real ? operands.real("constant_val", 0)
                                                                                : operands.integer("constant_val", 0));
        auto to = outputs[0].values<T>().begin();
        forEachIndex(outputs[0].type.shape, [&](const Shape& index) {
            int64_t at = 0;
            bool inside = true;
            for (size_t d = 0; d < index.size(); ++d) {
                const int64_t place = padding.place(index[d] - padding.before[d], x.type.shape[d]);
                inside = inside && place >= 0;
                at += place * strides[d];
            }
            *to++ = inside ? from[at] : outside;
        });
    });
}

TensorTypes inferTile(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    const auto repetitions = operands.integers("reps");
    operands.require(repetitions.size() == x.shape.size(), "\"reps\" does not have a number for each dimension");
    Shape shape = x.shape;
    for (size_t i = 0; i < shape.size(); ++i)
        shape[i] *= repetitions[i];
    operands.require(std::ranges::none_of(repetitions, [](int32_t times) { return times < 0; }),
        "a dimension cannot be repeated a negative number of times");
    return { outputType(operands, x.element, shape) };
}

void evaluateTile(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const Strides strides = rowMajorStrides(x.type.shape);
    withElementType(x.type.element, [&](auto zero) {
        const auto from = x.values<const decltype(zero)>();
        auto to = outputs[0].values<decltype(zero)>().begin();
        forEachIndex(outputs[0].type.shape, [&](const Shape& index) {
            int64_t at = 0;
            for (size_t d = 0; d < index.size(); ++d)
                at += index[d] % x.type.shape[d] * strides[d];
            *to++ = from[at];
        });
    });
}

TensorTypes inferReverse(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    axesOperand(operands, "axes", x.shape.size());
    return { x };
}

void evaluateReverse(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const Shape& shape = x.type.shape;
    const AxisSet axes = axesOperand(operands, "axes", shape.size());
    Walk reading { 0, rowMajorStrides(shape) };
    for (size_t i = 0; i < shape.size(); ++i) {
        if (!axes.contains(i))
            continue;
        reading.start += (shape[i] - 1) * reading.strides[i];
        reading.strides[i] = -reading.strides[i];
    }
    if (x.count() > 0)
        copyElements(shape, x, reading, outputs[0], { 0, rowMajorStrides(shape) });
}

struct SequenceAxes {
    size_t sequence, batch;
};

SequenceAxes sequenceAxes(const Operands& operands)
{
    const size_t rank = operands.tensor("x").type.shape.size();
    const SequenceAxes axes { normalisedAxis(operands, operands.integer("seq_axis"), rank),
        axisOperand(operands, "batch_axis", 0, rank) };
    operands.require(axes.sequence != axes.batch, "its two axes are the same");
    return axes;
}

TensorTypes inferReverseSequence(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    const TensorView& lengths = integerTensor(operands, "lengths");
    operands.require(lengths.type.shape == Shape { x.shape[sequenceAxes(operands).batch] },
        "\"lengths\" does not have a number for each sequence");
    return { x };
}

// The first lengths[b] elements of sequence b are reversed; a length outside of the sequence counts as the nearest.
void evaluateReverseSequence(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const auto lengths = operands.tensor("lengths").integers();
    const auto [sequenceAxis, batchAxis] = sequenceAxes(operands);
    const Strides strides = rowMajorStrides(x.type.shape);
    withElementType(x.type.element, [&, sequence = sequenceAxis, batch = batchAxis](auto zero) {
        const auto from = x.values<const decltype(zero)>();
        const auto to = outputs[0].values<decltype(zero)>();
        int64_t at = 0;
        forEachIndex(x.type.shape, [&](const Shape& index) {
            const int64_t length = std::clamp<int64_t>(lengths[index[batch]], 0, x.type.shape[sequence]);
            const int64_t place = index[sequence];
            to[at] = from[place < length ? at + (length - 1 - 2 * place) * strides[sequence] : at];
            ++at;
        });
    });
}

struct SlidingWindows {
    size_t axis;
    int64_t size, stride;
    Shape output;
};

SlidingWindows slidingWindows(const Operands& operands)
{
    const Shape& shape = operands.tensor("x").type.shape;
    SlidingWindows windows { normalisedAxis(operands, operands.integer("axis"), shape.size()), operands.integer("size"),
        operands.integer("stride", 1), {} };
    operands.require(windows.size >= 1 && windows.stride >= 1, "its size and stride must be at least 1");
    operands.require(windows.size <= shape[windows.axis], "its windows are longer than the axis");
    const int64_t count = (shape[windows.axis] - windows.size) / windows.stride + 1;
    const Shape front = joined(operands, slice(shape, 0, windows.axis), { count, windows.size });
    windows.output = joined(operands, front, slice(shape, windows.axis + 1, shape.size()));
    return windows;
}

TensorTypes inferSlidingWindows(const Operands& operands)
{
    return { outputType(operands, operands.tensor("x").type.element, slidingWindows(operands).output) };
}

void evaluateSlidingWindows(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const SlidingWindows windows = slidingWindows(operands);
    Strides reading = rowMajorStrides(x.type.shape);
    const int64_t step = reading[windows.axis];
    reading[windows.axis] = step * windows.stride;
    reading.insert(reading.begin() + static_cast<std::ptrdiff_t>(windows.axis) + 1, step);
    copyElements(windows.output, x, { 0, reading }, outputs[0], { 0, rowMajorStrides(windows.output) });
}

TensorTypes inferBandPart(const Operands& operands)
{
    const TensorView& x = operands.tensor("x");
    requireRank(operands, x, 2);
    operands.integer("lower", -1);
    operands.integer("upper", -1);
    return { x.type };
}

// Of the last two dimensions only a band around the diagonal is kept; a negative width keeps all on that side.
void evaluateBandPart(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const int64_t lower = operands.integer("lower", -1);
    const int64_t upper = operands.integer("upper", -1);
    const size_t rank = x.type.shape.size();
    withElementType(x.type.element, [&](auto zero) {
        auto from = x.values<const decltype(zero)>().begin();
        auto to = outputs[0].values<decltype(zero)>().begin();
        forEachIndex(x.type.shape, [&](const Shape& index) {
            const int64_t below = index[rank - 2] - index[rank - 1];
            const bool kept = (lower < 0 || below <= lower) && (upper < 0 || -below <= upper);
            *to++ = kept ? *from : zero;
            ++from;
        });
    });
}

constexpr OperationDefinition definitions[] = {
    { "band_part", inferBandPart, evaluateBandPart },
    { "pad", inferPad, evaluatePad },
    { "reverse", inferReverse, evaluateReverse },
    { "reverse_sequence", inferReverseSequence, evaluateReverseSequence },
    { "sliding_windows", inferSlidingWindows, evaluateSlidingWindows },
    { "tile", inferTile, evaluateTile },
};

} // namespace

Definitions spreadings() noexcept
{
    return definitions;
}

} // namespace MLProgram
