// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Weights/WeightFile.h"

#include "Text/TextTesting.h"
#include "Weights/WeightFileBuilder.h"

#include <gmock/gmock.h>

#include <limits>

namespace MLProgram {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr uint32_t uint8Code = 3;

class WeightFileTest : public testing::Test {
protected:
    Constant read(uint64_t offset, ScalarType type, const Shape& shape)
    {
        return WeightFile("w.bin", file.bytes(), nullptr).read(offset, type, shape);
    }

    std::string faultOfReading(uint64_t offset, ScalarType type = ScalarType::uint8, const Shape& shape = { 4 })
    {
        return errorOf([&] { read(offset, type, shape); }, MLModelError::Case::invalidProgram);
    }

    WeightFileBuilder file;
    uint64_t first = file.append(uint8Code, { 1, 2, 3, 4 });
};

TEST_F(WeightFileTest, GivesTheBytesOfTheFile)
{
    const uint64_t second = file.append(1, { 0x00, 0x3C, 0x00, 0xC0 });
    EXPECT_EQ(first, 64U);
    EXPECT_EQ(second, 192U);
    EXPECT_THAT(reals(read(first, ScalarType::uint8, { 2, 2 })), ElementsAre(1, 2, 3, 4));
    const Constant halves = read(second, ScalarType::float16, { 2 });
    EXPECT_THAT(reals(halves), ElementsAre(1, -2));
    EXPECT_EQ(halves.bytes().data(), file.bytes().data() + second + 64) << "mapped, not copied";
}

TEST_F(WeightFileTest, ReadsEveryElementType)
{
    const std::vector<std::pair<uint32_t, ScalarType>> codes { { 1, ScalarType::float16 }, { 2, ScalarType::float32 },
        { 3, ScalarType::uint8 }, { 4, ScalarType::int8 }, { 5, ScalarType::bfloat16 }, { 6, ScalarType::int16 },
        { 7, ScalarType::uint16 }, { 8, ScalarType::int4 }, { 9, ScalarType::uint1 }, { 10, ScalarType::uint2 },
        { 11, ScalarType::uint4 }, { 12, ScalarType::uint3 }, { 13, ScalarType::uint6 }, { 14, ScalarType::int32 },
        { 15, ScalarType::uint32 }, { 16, ScalarType::float8E4M3 }, { 17, ScalarType::float8E5M2 } };
    for (const auto& [code, type] : codes) {
        const auto size = static_cast<size_t>(checkedByteCount(type, 5).value());
        const uint64_t offset = file.append(code, std::vector<uint8_t>(size));
        EXPECT_THAT(reals(read(offset, type, { 5 })), ElementsAre(0, 0, 0, 0, 0)) << nameOf(type);
    }
}

TEST_F(WeightFileTest, ReadsPackedElementsInTheOrderOfTheirBits)
{
    const uint64_t offset = file.append(10, { 0x6C, 0x03 });
    EXPECT_THAT(reals(read(offset, ScalarType::uint2, { 5 })), ElementsAre(0, 3, 2, 1, 3));
    const uint64_t straddling = file.append(12, { 0xD1, 0x01 });
    EXPECT_THAT(reals(read(straddling, ScalarType::uint3, { 3 })), ElementsAre(1, 2, 7));
}

TEST_F(WeightFileTest, ReadsBooleansFromBytes)
{
    const uint64_t offset = file.append(uint8Code, { 0, 1, 7 });
    const Tensor flags = read(offset, ScalarType::boolean, { 3 }).widened();
    EXPECT_THAT(flags.view().booleans(), ElementsAre(0, 1, 1));
}

TEST_F(WeightFileTest, FollowsTheOffsetOfTheData)
{
    file.append(uint8Code, { 9, 8, 7, 6, 5 });
    file.set<uint64_t>(first + 16, 257);
    EXPECT_THAT(reals(read(first, ScalarType::uint8, { 4 })), ElementsAre(8, 7, 6, 5));
}

TEST_F(WeightFileTest, CopiesDataThatAreNotAligned)
{
    const uint64_t offset = file.append(1, { 0x00, 0x00, 0x3C });
    file.set<uint64_t>(offset + 8, 2);
    file.set<uint64_t>(offset + 16, offset + 65);
    EXPECT_THAT(reals(read(offset, ScalarType::float16, { 1 })), ElementsAre(1));
}

TEST_F(WeightFileTest, ReadsEmptyValues)
{
    const uint64_t offset = file.append(uint8Code, {});
    EXPECT_EQ(read(offset, ScalarType::uint8, { 0, 3 }).count(), 0);
}

TEST_F(WeightFileTest, RefusesOffsetsThatAreNoRecords)
{
    EXPECT_THAT(faultOfReading(0), HasSubstr("does not begin at a multiple of 64"));
    EXPECT_THAT(faultOfReading(65), HasSubstr("does not begin at a multiple of 64"));
    EXPECT_THAT(faultOfReading(6400), HasSubstr("lies beyond the end"));
    EXPECT_THAT(faultOfReading(128), HasSubstr("lies beyond the end")) << "cut off";
    EXPECT_THAT(faultOfReading(std::numeric_limits<uint64_t>::max() - 63), HasSubstr("lies beyond the end"));
    file.set<uint32_t>(first, 0xDEADBEEE);
    EXPECT_EQ(faultOfReading(first), "w.bin: the record at 64 is none");
}

TEST_F(WeightFileTest, RefusesAnotherTypeOrSize)
{
    EXPECT_THAT(faultOfReading(first, ScalarType::int8), HasSubstr("another element type"));
    EXPECT_THAT(faultOfReading(first, ScalarType::uint8, { 5 }), HasSubstr("another size"));
    EXPECT_THAT(faultOfReading(first, ScalarType::uint8, { -4 }), HasSubstr("another size"));
    EXPECT_THAT(faultOfReading(first, ScalarType::uint8, { int64_t { 1 } << 40, int64_t { 1 } << 40 }),
        HasSubstr("another size"));
    for (const uint32_t code : { 0U, 18U, 0xFFFFFFFFU }) {
        file.set<uint32_t>(first + 4, code);
        EXPECT_THAT(faultOfReading(first), HasSubstr("another element type"));
    }
}

TEST_F(WeightFileTest, RefusesDataBeyondTheEnd)
{
    for (const uint64_t offset : { uint64_t { 129 }, uint64_t { 1 } << 40, std::numeric_limits<uint64_t>::max() - 1 }) {
        file.set<uint64_t>(first + 16, offset);
        EXPECT_THAT(faultOfReading(first), HasSubstr("beyond the end of the file"));
    }
}

TEST_F(WeightFileTest, RefusesAnotherKindOfFile)
{
    file.set<uint32_t>(4, 1);
    EXPECT_EQ(faultOfReading(first), "w.bin is not a file of weights, version 2");
    file.bytes().resize(63);
    EXPECT_EQ(faultOfReading(first), "w.bin is not a file of weights, version 2");
    file.bytes().clear();
    EXPECT_EQ(faultOfReading(first), "w.bin is not a file of weights, version 2");
}

} // namespace
} // namespace MLProgram
