// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/View.h"

#include <gtest/gtest.h>

namespace MLProgram {

namespace {

View dense(const Shape& shape)
{
    return { 0, ElementType::real, 0, shape, denseStrides(shape) };
}

TEST(View, KnowsItsOrderInMemory)
{
    EXPECT_EQ(denseStrides({ 2, 3, 4 }), (Shape { 12, 4, 1 }));
    const size_t channelsLast[] = { 0, 2, 1 };
    const View view { 0, ElementType::real, 0, { 2, 3, 4 }, orderedStrides({ 2, 3, 4 }, channelsLast) };
    EXPECT_EQ(view.strides, (Shape { 12, 1, 3 }));
    EXPECT_FALSE(view.isDense());
    EXPECT_EQ(memoryOrder(view), (std::vector<size_t> { 0, 2, 1 }));
    EXPECT_EQ(orderWithLast(3, 1), (std::vector<size_t> { 0, 2, 1 }));
}

TEST(View, IsDenseWhateverTheStridesOfSingleValues)
{
    EXPECT_TRUE((View { 0, ElementType::real, 0, { 3, 1, 4 }, { 4, 77, 1 } }).isDense());
    EXPECT_FALSE((View { 0, ElementType::real, 0, { 3, 4 }, { 5, 1 } }).isDense());
}

TEST(View, TransposesByExchangingStrides)
{
    const int32_t permutation[] = { 0, -1, 1 };
    const View turned = transposed(dense({ 2, 3, 4 }), permutation);
    EXPECT_EQ(turned.shape, (Shape { 2, 4, 3 }));
    EXPECT_EQ(turned.strides, (Shape { 12, 1, 4 }));
}

TEST(View, ReshapesWhatLiesAtEvenDistances)
{
    EXPECT_EQ(reshaped(dense({ 6, 4 }), { 2, 3, 1, 4 })->strides, (Shape { 12, 4, 4, 1 }));
    const int32_t permutation[] = { 1, 0 };
    const View turned = transposed(dense({ 6, 4 }), permutation);
    EXPECT_EQ(reshaped(turned, { 2, 2, 6 })->strides, (Shape { 2, 1, 4 })); // a dimension may be cut
    EXPECT_FALSE(reshaped(turned, { 24 })); // but not joined with another that lies elsewhere
}

TEST(View, ReshapesPartsWithGaps)
{
    const View part = narrowed(dense({ 4, 10 }), 1, 2, 6);
    EXPECT_EQ(part.offset, 2);
    EXPECT_EQ(reshaped(part, { 4, 2, 3 })->strides, (Shape { 10, 3, 1 }));
    EXPECT_FALSE(reshaped(part, { 24 }));
}

TEST(View, ReshapesEmptyValuesToAnyShape)
{
    EXPECT_EQ(reshaped(dense({ 0, 3 }), { 5, 0 })->shape, (Shape { 5, 0 }));
}

TEST(View, StretchesByStridesOfZero)
{
    const View wide = broadcast(dense({ 3, 1 }), { 2, 3, 4 });
    EXPECT_EQ(wide.shape, (Shape { 2, 3, 4 }));
    EXPECT_EQ(wide.strides, (Shape { 0, 1, 0 }));
}

TEST(View, NarrowsBackwards)
{
    const View reversed = narrowed(dense({ 2, 5 }), 1, 4, 3, -2);
    EXPECT_EQ(reversed.offset, 4);
    EXPECT_EQ(reversed.shape, (Shape { 2, 3 }));
    EXPECT_EQ(reversed.strides, (Shape { 5, -2 }));
}

TEST(View, FindsTheCommonStrideOfDimensions)
{
    const size_t outer[] = { 0, 1 };
    EXPECT_EQ(commonStride(dense({ 2, 3, 4 }), outer), 4);
    EXPECT_EQ(commonStride(narrowed(dense({ 2, 3, 4 }), 1, 0, 2), outer), std::nullopt);
    EXPECT_EQ(commonStride(narrowed(dense({ 2, 3, 4 }), 1, 0, 1), outer), 12); // the single one does not matter
    EXPECT_EQ(commonStride(dense({ 2, 3, 4 }), {}), 0);
}

} // namespace

} // namespace MLProgram
