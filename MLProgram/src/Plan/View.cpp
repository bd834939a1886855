// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/View.h"

#include <algorithm>
#include <numeric>

namespace MLProgram {

bool View::isDense() const noexcept
{
    int64_t expected = 1;
    for (size_t i = shape.size(); i-- > 0;) {
        if (shape[i] != 1 && strides[i] != expected)
            return false;
        expected *= shape[i];
    }
    return true;
}

Shape denseStrides(const Shape& shape)
{
    Shape strides(shape.size());
    int64_t stride = 1;
    for (size_t i = shape.size(); i-- > 0;) {
        strides[i] = stride;
        stride *= shape[i];
    }
    return strides;
}

Shape orderedStrides(const Shape& shape, std::span<const size_t> order)
{
    Shape strides(shape.size());
    int64_t stride = 1;
    for (size_t i = order.size(); i-- > 0;) {
        strides[order[i]] = stride;
        stride *= shape[order[i]];
    }
    return strides;
}

std::vector<size_t> orderWithLast(size_t rank, size_t last)
{
    std::vector<size_t> order;
    for (size_t i = 0; i < rank; ++i) {
        if (i != last)
            order.push_back(i);
    }
    order.push_back(last);
    return order;
}

std::vector<size_t> memoryOrder(const View& view)
{
    std::vector<size_t> order;
    for (size_t i = 0; i < view.shape.size(); ++i) {
        if (view.shape[i] != 1)
            order.push_back(i);
    }
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) { return view.strides[a] > view.strides[b]; });
    for (size_t i = 0; i < view.shape.size(); ++i) {
        if (view.shape[i] == 1)
            order.insert(order.begin(), i);
    }
    return order;
}

View transposed(const View& view, std::span<const int32_t> permutation)
{
    View result = view;
    const auto rank = static_cast<int32_t>(view.shape.size());
    for (size_t i = 0; i < permutation.size(); ++i) {
        const auto from = static_cast<size_t>(permutation[i] < 0 ? permutation[i] + rank : permutation[i]);
        result.shape[i] = view.shape[from];
        result.strides[i] = view.strides[from];
    }
    return result;
}

namespace {

struct Run {
    int64_t count;
    int64_t stride;
};

// Dimensions other than 1, neighbours merged where they lie one after the other.
std::vector<Run> runsOf(const View& view)
{
    std::vector<Run> runs;
    for (size_t i = 0; i < view.shape.size(); ++i) {
        if (view.shape[i] == 1)
            continue;
        if (!runs.empty() && runs.back().stride == view.strides[i] * view.shape[i])
            runs.back() = { runs.back().count * view.shape[i], view.strides[i] };
        else
            runs.push_back({ view.shape[i], view.strides[i] });
    }
    return runs;
}

} // namespace

std::optional<View> reshaped(const View& view, const Shape& shape)
{
    View result = view;
    result.shape = shape;
    result.strides = denseStrides(shape);
    if (view.count() == 0)
        return result;
    std::vector<Run> runs = runsOf(view);
    for (size_t i = shape.size(); i-- > 0;) {
        if (shape[i] == 1)
            continue;
        if (runs.empty() || runs.back().count % shape[i] != 0)
            return std::nullopt;
        result.strides[i] = runs.back().stride;
        runs.back() = { runs.back().count / shape[i], runs.back().stride * shape[i] };
        if (runs.back().count == 1)
            runs.pop_back();
    }
    return result;
}

View broadcast(const View& view, const Shape& shape)
{
    View result = view;
    result.shape = shape;
    result.strides.assign(shape.size(), 0);
    const size_t missing = shape.size() - view.shape.size();
    for (size_t i = 0; i < view.shape.size(); ++i) {
        if (view.shape[i] == shape[missing + i] && view.shape[i] != 1)
            result.strides[missing + i] = view.strides[i];
    }
    return result;
}

View narrowed(const View& view, size_t axis, int64_t first, int64_t count, int64_t step)
{
    View result = view;
    result.offset += first * view.strides[axis];
    result.shape[axis] = count;
    result.strides[axis] *= step;
    return result;
}

std::optional<int64_t> commonStride(const View& view, std::span<const size_t> dimensions)
{
    std::optional<int64_t> stride;
    int64_t next = 0;
    for (size_t i = dimensions.size(); i-- > 0;) {
        const size_t dimension = dimensions[i];
        if (view.shape[dimension] == 1)
            continue;
        if (stride && view.strides[dimension] != next)
            return std::nullopt;
        if (!stride)
            stride = view.strides[dimension];
        next = view.strides[dimension] * view.shape[dimension];
    }
    return stride.value_or(0);
}

} // namespace MLProgram
