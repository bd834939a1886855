// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/Windows.h"

#include "Operations/Shapes.h"

#include <algorithm>
#include <string>

namespace MLProgram {

namespace {

enum class Padding { valid, custom, same, sameLower };

struct PaddingName {
    std::string_view text;
    Padding padding;
};
constexpr PaddingName paddingNames[] = {
    { "valid", Padding::valid },
    { "custom", Padding::custom },
    { "same", Padding::same },
    { "same_lower", Padding::sameLower },
};

Padding paddingOperand(const Operands& operands)
{
    const auto* const found = std::ranges::find(paddingNames, operands.text("pad_type", "valid"), &PaddingName::text);
    operands.require(found != std::end(paddingNames), "its kind of padding is unknown");
    return found->padding;
}

using Numbers = boost::container::static_vector<int64_t, 2 * mostSpatialDimensions>;

// A vector operand of `count` numbers, each at least `least`; `least` for each when it is absent.
Numbers numbers(const Operands& operands, std::string_view name, size_t count, int64_t least)
{
    const auto given = operands.optionalIntegers(name);
    if (!given)
        return Numbers(count, least);
    if (given->size() != count || std::ranges::any_of(*given, [=](int64_t number) { return number < least; }))
        operands.refuse('"' + std::string(name) + "\" must have " + std::to_string(count) + " numbers, none below "
            + std::to_string(least));
    return { given->begin(), given->end() };
}

// Toward negative and positive infinity; y is positive.
int64_t floorQuotient(int64_t x, int64_t y)
{
    return x >= 0 ? x / y : -((y - 1 - x) / y);
}
int64_t ceilingQuotient(int64_t x, int64_t y)
{
    return -floorQuotient(-x, y);
}

// Shares what is missing of, or beyond, the wanted length between both ends; the larger half goes to the end, or to
// the beginning when `lower`.
void share(Window& window, int64_t total, bool lower)
{
    window.before = lower ? ceilingQuotient(total, 2) : total / 2;
    window.after = total - window.before;
}

void place(Window& window, Padding padding, Direction direction)
{
    if (padding == Padding::same || padding == Padding::sameLower) {
        window.output = ceilingQuotient(window.input, window.stride);
        const int64_t covered = (window.output - 1) * window.stride + window.extent();
        return share(window, std::max<int64_t>(0, covered - window.input), padding == Padding::sameLower);
    }
    const int64_t spare = window.input + window.before + window.after - window.extent();
    if (direction != Direction::ceilingPooling) {
        window.output = floorQuotient(spare, window.stride) + 1;
        return;
    }
    window.output = floorQuotient(spare + window.stride - 1, window.stride) + 1;
    const bool isPadded = window.before > 0 || window.after > 0;
    if (isPadded && (window.output - 1) * window.stride >= window.input + window.before)
        --window.output;
}

void placeTransposed(Window& window, Padding padding)
{
    const int64_t full = window.input == 0 ? 0 : (window.input - 1) * window.stride + window.extent();
    if (padding == Padding::same || padding == Padding::sameLower) {
        window.output = window.input * window.stride;
        return share(window, std::max<int64_t>(0, full - window.output), padding == Padding::sameLower);
    }
    window.output = full - window.before - window.after;
}

} // namespace

Window::Elements Window::covering(int64_t o) const noexcept
{
    const int64_t first = before - o * stride; // distance from the window's first element to the input's
    return { std::max<int64_t>(0, ceilingQuotient(first, dilation)),
        std::min(size, ceilingQuotient(first + input, dilation)) };
}

Windows windowsOf(const Operands& operands, const Shape& tensor, std::span<const int64_t> kernel, Direction direction)
{
    const size_t count = kernel.size();
    operands.require(count >= 1 && count <= mostSpatialDimensions && tensor.size() == count + 2,
        "its tensors do not have one to three spatial dimensions");
    const auto strides = numbers(operands, "strides", count, 1);
    const auto dilations = numbers(operands, "dilations", count, 1);
    const auto pads = numbers(operands, "pad", 2 * count, 0);
    const Padding padding = paddingOperand(operands);
    Windows windows;
    int64_t windowSize = 1;
    for (size_t i = 0; i < count; ++i) {
        Window& window = windows[mostSpatialDimensions - count + i];
        window = { tensor[2 + i], kernel[i], strides[i], dilations[i], 0, 0, 1 };
        operands.require(kernel[i] >= 1 && window.extent() <= maximumElementCount, "its kernel has an unusable size");
        windowSize *= kernel[i];
        operands.require(windowSize <= maximumElementCount, "its kernel is too large");
        if (padding == Padding::custom) {
            window.before = pads[2 * i];
            window.after = pads[2 * i + 1];
        }
        if (direction == Direction::transposedConvolution)
            placeTransposed(window, padding);
        else
            place(window, padding, direction);
        operands.require(window.output >= 0, "its kernel is larger than the padded input");
    }
    return windows;
}

} // namespace MLProgram
