// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/Reorder.h"

#include "Kernels/KernelTesting.h"
#include "Kernels/Transpose.h"

namespace MLProgram {

namespace {

using PlatformSupport::Float16;

TEST(Transpose, TurnsEveryShapeOfBothWidths)
{
    for (int64_t rows = 1; rows < 20; ++rows) {
        for (const int64_t columns : { 1, 3, 4, 8, 17, 300 }) {
            const std::vector<float> from = randomValues(rows * columns, 1);
            const std::vector<Float16> halfFrom = halves(from);
            std::vector<float> to(from.size());
            std::vector<Float16> halfTo(from.size());
            transpose(from.data(), columns, rows, columns, to.data(), rows);
            transpose(halfFrom.data(), columns, rows, columns, halfTo.data(), rows);
            for (int64_t row = 0; row < rows; ++row) {
                for (int64_t column = 0; column < columns; ++column) {
                    const auto source = static_cast<size_t>(row * columns + column);
                    const auto target = static_cast<size_t>(column * rows + row);
                    ASSERT_EQ(to[target], from[source]);
                    ASSERT_EQ(halfTo[target], halfFrom[source]);
                }
            }
        }
    }
}

TEST(Transpose, TakesANullRowForZeros)
{
    const std::vector<float> row = randomValues(9, 1);
    const float* rows[] = { row.data(), nullptr, row.data(), row.data(), row.data() };
    std::vector<float> to(45, 7.0f);
    transposeRows(rows, 5, 9, to.data(), 5);
    for (size_t column = 0; column < 9; ++column) {
        EXPECT_EQ(to[column * 5 + 1], 0.0f);
        EXPECT_EQ(to[column * 5 + 4], row[column]);
    }
}

template <typename Value> void expectReordered(const Shape& shape, const Shape& fromStrides, const Shape& toStrides)
{
    const auto count = static_cast<size_t>(elementCount(shape));
    std::vector<Value> from(4 * count + 64);
    for (size_t i = 0; i < from.size(); ++i)
        from[i] = static_cast<Value>(i % 251);
    std::vector<Value> to(from.size());
    const ElementType element = sizeof(Value) == 1 ? ElementType::boolean : ElementType::integer;
    run({ shape, element, from.data(), fromStrides, to.data(), toStrides });
    for (int64_t i = 0; i < elementCount(shape); ++i) {
        int64_t rest = i;
        int64_t source = 0;
        int64_t target = 0;
        for (size_t d = shape.size(); d-- > 0;) {
            source += rest % shape[d] * fromStrides[d];
            target += rest % shape[d] * toStrides[d];
            rest /= shape[d];
        }
        ASSERT_EQ(to[static_cast<size_t>(target)], from[static_cast<size_t>(source)]) << i;
    }
}

TEST(Reorder, CopiesBetweenAnyArrangements)
{
    expectReordered<int32_t>({ 1, 5, 1, 7 }, { 35, 7, 7, 1 }, { 35, 1, 5, 5 }); // channels first to last
    expectReordered<int32_t>({ 3, 20, 30 }, { 600, 30, 1 }, { 1, 3, 60 });
    expectReordered<int32_t>({ 3, 4 }, { 0, 1 }, { 4, 1 }); // broadcast
    expectReordered<int32_t>({ 6, 4 }, { 8, 2 }, { 4, 1 }); // every other value
    expectReordered<int32_t>({}, {}, {});
    expectReordered<uint8_t>({ 5, 9 }, { 9, 1 }, { 1, 5 });
    expectReordered<int32_t>({ 64, 40, 16 }, { 640, 1, 40 }, { 640, 16, 1 });
}

TEST(Reorder, CopiesNothingWhenThereIsNothing)
{
    run({ { 0, 4 }, ElementType::real, nullptr, { 4, 1 }, nullptr, { 4, 1 } });
}

} // namespace

} // namespace MLProgram
