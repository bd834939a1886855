// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/Reorder.h"

#include "Kernels/Transpose.h"
#include "Kernels/Workers.h"

#include <algorithm>

namespace MLProgram {

namespace {

constexpr int64_t valuesWorthThreads = 1 << 14;

// Two dimensions copied at a time, the inner one that in which the destination lies densest; the others are
// looped over.
struct Plane {
    int64_t rows = 1;
    int64_t fromRow = 0;
    int64_t toRow = 0;
    int64_t columns = 1;
    int64_t fromColumn = 0;
    int64_t toColumn = 1;
};

template <typename Value> void copyPlane(const Plane& plane, const Value* from, Value* to)
{
    for (int64_t row = 0; row < plane.rows; ++row) {
        const Value* source = from + row * plane.fromRow;
        Value* target = to + row * plane.toRow;
        if (plane.fromColumn == 1 && plane.toColumn == 1) {
            std::copy_n(source, plane.columns, target);
            continue;
        }
        for (int64_t column = 0; column < plane.columns; ++column)
            target[column * plane.toColumn] = source[column * plane.fromColumn];
    }
}

// A true transposition of 32-bit values; their bits are moved as floats.
bool isTransposition(const Plane& plane)
{
    return plane.fromRow == 1 && plane.toColumn == 1 && plane.rows > 1 && plane.columns > 1;
}

class Loop {
public:
    explicit Loop(const Reorder& reorder)
        : reorder_(reorder)
    {
        for (size_t i = 0; i < reorder.shape.size(); ++i) {
            if (reorder.shape[i] != 1)
                outer_.push_back(i);
        }
        plane_.columns = take(reorder.toStrides, plane_.fromColumn, plane_.toColumn);
        plane_.rows = take(reorder.fromStrides, plane_.fromRow, plane_.toRow);
    }

    int64_t count() const
    {
        int64_t count = 1;
        for (const size_t i : outer_)
            count *= reorder_.shape[i];
        return count;
    }

    template <typename Value> void copy(int64_t index) const
    {
        int64_t fromOffset = 0;
        int64_t toOffset = 0;
        for (size_t i = outer_.size(); i-- > 0;) {
            const int64_t at = index % reorder_.shape[outer_[i]];
            index /= reorder_.shape[outer_[i]];
            fromOffset += at * reorder_.fromStrides[outer_[i]];
            toOffset += at * reorder_.toStrides[outer_[i]];
        }
        const auto* from = static_cast<const Value*>(reorder_.from) + fromOffset;
        auto* to = static_cast<Value*>(reorder_.to) + toOffset;
        if constexpr (sizeof(Value) == sizeof(float)) {
            if (isTransposition(plane_))
                return transpose(from, plane_.fromColumn, plane_.columns, plane_.rows, to, plane_.toRow);
        }
        copyPlane(plane_, from, to);
    }

private:
    // Removes the dimension with the smallest stride and gives its length and strides.
    int64_t take(const Shape& strides, int64_t& fromStride, int64_t& toStride)
    {
        if (outer_.empty())
            return 1;
        const auto densest = std::min_element(
            outer_.begin(), outer_.end(), [&](size_t a, size_t b) { return strides[a] < strides[b]; });
        const size_t dimension = *densest;
        outer_.erase(densest);
        fromStride = reorder_.fromStrides[dimension];
        toStride = reorder_.toStrides[dimension];
        return reorder_.shape[dimension];
    }

    const Reorder& reorder_;
    boost::container::static_vector<size_t, maximumRank> outer_;
    Plane plane_;
};

} // namespace

void run(const Reorder& reorder)
{
    const int64_t values = elementCount(reorder.shape);
    if (values == 0)
        return;
    const Loop loop(reorder);
    const int64_t count = loop.count();
    forEachTask(count, values > valuesWorthThreads, [&](int64_t i, int) {
        if (reorder.element == ElementType::boolean)
            loop.copy<uint8_t>(i);
        else
            loop.copy<float>(i);
    });
}

} // namespace MLProgram
