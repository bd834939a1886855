// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <MLProgram/MLModelError.h>
#include <MLProgram/MLMultiArray.h>
#include <PlatformSupport/Float16.h>

#include <gmock/gmock.h>

#include <limits>

namespace MLProgram {
namespace {

using testing::Each;
using testing::ElementsAre;

TEST(MLMultiArray, IsZeroFilledAndAligned)
{
    MLMultiArray array({ 2, 3 }, MLMultiArrayDataType::float32);
    EXPECT_EQ(array.count(), 6);
    EXPECT_THAT(array.shape(), ElementsAre(2, 3));
    EXPECT_THAT(array.elements<float>(), Each(0.0F));
    EXPECT_EQ(reinterpret_cast<uintptr_t>(array.dataPointer()) % 64, 0U);
}

TEST(MLMultiArray, HoldsOneElementWithoutDimensionsAndNoneWithAnEmptyOne)
{
    EXPECT_EQ(MLMultiArray({}, MLMultiArrayDataType::int8).elements<int8_t>().size(), 1U);
    MLMultiArray empty({ 4, 0 }, MLMultiArrayDataType::float64);
    EXPECT_EQ(empty.elements<double>().size(), 0U);
    EXPECT_NE(empty.dataPointer(), nullptr);
}

TEST(MLMultiArray, RefusesShapesThatCannotBe)
{
    constexpr int64_t largest = std::numeric_limits<int64_t>::max();
    for (const std::vector<int64_t>& shape : { std::vector<int64_t> { -1 }, { 0, -1 }, { largest },
             { largest, largest }, { int64_t { 1 } << 32, 0 }, { 65536, 65536 } })
        EXPECT_THROW(MLMultiArray(shape, MLMultiArrayDataType::int8), MLModelError);
}

TEST(MLMultiArray, KnowsTheSizesOfItsTypes)
{
    EXPECT_EQ(sizeOf(MLMultiArrayDataType::float16), sizeof(PlatformSupport::Float16));
    EXPECT_EQ(sizeOf(MLMultiArrayDataType::float32), sizeof(float));
    EXPECT_EQ(sizeOf(MLMultiArrayDataType::float64), sizeof(double));
    EXPECT_EQ(sizeOf(MLMultiArrayDataType::int32), sizeof(int32_t));
    EXPECT_EQ(sizeOf(MLMultiArrayDataType::int8), sizeof(int8_t));
}

TEST(MLMultiArrayDeathTest, EndsTheProcessWhenReadAsAnotherType)
{
    MLMultiArray array({ 1 }, MLMultiArrayDataType::float32);
    EXPECT_DEATH(array.elements<int32_t>(), "read as the type that it holds");
}

} // namespace
} // namespace MLProgram
