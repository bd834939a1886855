// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Text/Literal.h"

#include "Text/TextTesting.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace MLProgram {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr float infinity = std::numeric_limits<float>::infinity();

std::vector<float> values(const std::string& text)
{
    return reals(*literal(text).constant);
}

std::vector<unsigned> bytes(const std::string& text)
{
    std::vector<unsigned> found;
    const Literal value = literal(text);
    for (const std::byte byte : value.constant->bytes())
        found.push_back(std::to_integer<unsigned>(byte));
    return found;
}

TEST(Literal, ReadsBothSpellingsOfAScalar)
{
    EXPECT_THAT(values("int32(-7)"), ElementsAre(-7));
    EXPECT_THAT(values("tensor<int32, []>(-7)"), ElementsAre(-7));
    EXPECT_EQ(literal("tensor<int32, []>(1)").type, literal("int32(1)").type);
    EXPECT_EQ(literal("string(\"valid\")").constant->text(), "valid");
    EXPECT_EQ(literal("tensor<string, []>(\"valid\")").constant->text(), "valid");
}

TEST(Literal, ReplacesEscapes)
{
    EXPECT_EQ(literal(R"(string("a\"b\\c\n\t\r"))").constant->text(), "a\"b\\c\n\t\r");
}

TEST(Literal, ReadsHexadecimalFloats)
{
    EXPECT_THAT(values("tensor<fp32, [5]>([0x1p+0, -0x1.8p-3, 0x1.010102p-8, 0x0p+0, -0x0p+0])"),
        ElementsAre(1.0F, -0.1875F, 0x1.010102p-8F, 0.0F, -0.0F));
    EXPECT_TRUE(std::signbit(values("fp32(-0x0p+0)").front()));
}

TEST(Literal, ReadsDecimalsIntegersAndWordsAsFloats)
{
    EXPECT_THAT(values("tensor<fp32, [6]>([0.5, 4.096e-05, 3, inf, -inf, infinity])"),
        ElementsAre(0.5F, 4.096e-05F, 3.0F, infinity, -infinity, infinity));
    EXPECT_TRUE(std::isnan(values("fp32(nan)").front()));
    EXPECT_TRUE(std::isnan(values("fp16(-nan)").front()));
}

TEST(Literal, KeepsSubnormalHalves)
{
    EXPECT_EQ(bits16("fp16(0x1p-24)"), 0x0001);
    EXPECT_EQ(bits16("fp16(0x1.5p-17)"), 0x00A8);
    EXPECT_EQ(bits16("fp16(-0x1.ffcp+15)"), 0xFBFF);
}

// 1 + 2^-11 lies halfway between two halves, and the last digit just above: rounding to 32 bits first loses it.
TEST(Literal, RoundsOnceToTheDeclaredType)
{
    EXPECT_EQ(bits16("fp16(0x1.002p+0)"), 0x3C00);
    EXPECT_EQ(bits16("fp16(0x1.0020000001p+0)"), 0x3C01);
    EXPECT_EQ(bits16("bf16(0x1.01p+0)"), 0x3F80);
    EXPECT_EQ(bits16("bf16(0x1.0100000001p+0)"), 0x3F81);
    EXPECT_EQ(bits16("fp16(0x1p+16)"), 0x7C00);
}

TEST(Literal, ReadsEightBitFloatsThatAreExact)
{
    EXPECT_THAT(bytes("tensor<fp8e4m3fn, [4]>([0x1p+0, 0x1.cp+8, -0x1p-9, nan])"), ElementsAre(0x38, 0x7E, 0x81, 0x7F));
    EXPECT_THAT(bytes("tensor<fp8e5m2, [2]>([0x1p+0, -inf])"), ElementsAre(0x3C, 0xFC));
    EXPECT_THAT(faultOfLiteral("fp8e4m3fn(0x1.01p+0)"), HasSubstr("is no value of type fp8e4m3fn"));
}

TEST(Literal, PacksElementsBelowEightBits)
{
    EXPECT_THAT(bytes("tensor<uint2, [5]>([0, 3, 2, 1, 3])"), ElementsAre(0x6C, 0x03));
    EXPECT_THAT(bytes("tensor<int4, [3]>([-8, 7, -1])"), ElementsAre(0x78, 0x0F));
    EXPECT_THAT(bytes("tensor<uint3, [3]>([1, 2, 7])"), ElementsAre(0xD1, 0x01));
    EXPECT_THAT(values("tensor<uint6, [4]>([63, 0, 33, 1])"), ElementsAre(63, 0, 33, 1));
    EXPECT_THAT(values("tensor<int4, [3]>([-8, 7, -1])"), ElementsAre(-8, 7, -1));
    EXPECT_THAT(values("tensor<uint1, [9]>([1, 0, 0, 0, 0, 0, 0, 0, 1])"), ElementsAre(1, 0, 0, 0, 0, 0, 0, 0, 1));
}

TEST(Literal, ChecksTheRangeOfIntegers)
{
    EXPECT_THAT(values("tensor<int8, [2]>([-128, 127])"), ElementsAre(-128, 127));
    EXPECT_THAT(values("uint64(18446744073709551615)"), ElementsAre(2147483647.0F)) << "the nearest of 32 bits";
    for (const char* const text : { "int8(128)", "int8(-129)", "uint8(-1)", "uint8(256)", "uint3(8)", "int4(8)",
             "int32(0x1p+0)", "int32(1.0)", "int32(true)", "int64(9223372036854775808)", "bool(1)" })
        EXPECT_THAT(faultOfLiteral(text), HasSubstr("is no value of type")) << text;
}

TEST(Literal, RefusesMalformedFloats)
{
    for (const char* const text : { "fp32(0x)", "fp32(0x1p)", "fp32(1e)", "fp32(1.5x)", "fp32(0x-1p+0)",
             "fp32(infinite)", "fp32(--1)", "fp32(\"1\")", "fp32([1])", "fp32()" })
        EXPECT_THAT(faultOfLiteral(text), HasSubstr("model.mil, line 1, column")) << text;
}

TEST(Literal, ReadsNestedLists)
{
    const Literal value = literal("tensor<int32, [2, 1, 3]>([[[1, 2, 3]], [[4, 5, 6]]])");
    EXPECT_THAT(reals(*value.constant), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(value.constant->shape(), ElementsAre(2, 1, 3));
    EXPECT_THAT(values("tensor<bool, [3]>([true, false, true])"), ElementsAre(1, 0, 1));
}

TEST(Literal, TakesOpenDimensionsFromTheList)
{
    EXPECT_THAT(literal("tensor<int32, [?]>([4, 5])").constant->shape(), ElementsAre(2));
    EXPECT_THAT(literal("tensor<int32, [?, 2]>([[4, 5], [6, 7], [8, 9]])").type.shape, ElementsAre(3, 2));
    EXPECT_THAT(literal("tensor<int32, [?, ?]>([])").constant->shape(), ElementsAre(0, 0));
}

TEST(Literal, ReadsEmptyTensors)
{
    EXPECT_THAT(values("tensor<fp32, [0]>([])"), IsEmpty());
    EXPECT_THAT(values("tensor<fp32, [0, 3]>([])"), IsEmpty());
    EXPECT_THAT(values("tensor<fp32, [2, 0]>([[], []])"), IsEmpty());
}

TEST(Literal, RefusesListsOfAnotherForm)
{
    EXPECT_EQ(faultOfLiteral("tensor<int32, [3]>([1, 2])"),
        "model.mil, line 1, column 25: this list has 2 elements instead of 3");
    for (const char* const text : { "tensor<int32, [2]>([1, 2, 3])", "tensor<int32, [2, 2]>([[1, 2], [3]])",
             "tensor<int32, [2]>([[1, 2]])", "tensor<int32, [2, 2]>([1, 2])", "tensor<int32, [2]>(1, 2)",
             "tensor<int32, [2]>([1, 2,])", "tensor<int32, [2]>([1 2])", "tensor<int32, [2]>([1, 2]",
             "tensor<int32, [?, 2]>([[1, 2], [3]])", "tensor<int32, [2]>([[1], 2])" })
        EXPECT_THAT(faultOfLiteral(text), HasSubstr("model.mil, line 1, column")) << text;
}

TEST(Literal, ReadsListsTuplesAndDictionaries)
{
    const Literal shapes = literal(R"(list<tensor<int32, [2]>, ?>([[0, 4], [1, 1]]))");
    ASSERT_EQ(shapes.items.size(), 2U);
    EXPECT_THAT(reals(*shapes.items[1].constant), ElementsAre(1, 1));

    const Literal pair
        = literal(R"(tuple<string, dict<string, tensor<int32, [?]>>>(("D", {{"x", [1, 4]}, {"y", []}})))");
    ASSERT_EQ(pair.items.size(), 2U);
    EXPECT_EQ(pair.items[0].constant->text(), "D");
    ASSERT_EQ(pair.items[1].items.size(), 4U);
    EXPECT_EQ(pair.items[1].items[2].constant->text(), "y");
    EXPECT_THAT(literal("tuple<tuple<string, string>>()").items, IsEmpty());
}

TEST(Literal, ReadsPartsThatNameTheirTypeOnceMore)
{
    const Literal list = literal("list<tensor<int32, [1]>, 2>([tensor<int32, [1]>([5]), [6]])");
    ASSERT_EQ(list.items.size(), 2U);
    EXPECT_THAT(reals(*list.items[0].constant), ElementsAre(5));
    EXPECT_THAT(faultOfLiteral("list<int32, 1>([fp32(1)])"), HasSubstr("a value of type int32 is expected here"));
    EXPECT_THAT(faultOfLiteral("list<int32, 1>([list<int32, 1>([1])])"), HasSubstr("a value of type int32"));
}

TEST(Literal, RefusesPartsOfAnotherForm)
{
    for (const char* const text :
        { "list<int32, 2>([1])", "tuple<int32, int32>((1))", "tuple<int32>((1, 2))", "dict<string, int32>({{\"a\"}})",
            "dict<string, int32>({\"a\", 1})", "state<int32>(1)", "list<int32, 1>((1))" })
        EXPECT_THAT(faultOfLiteral(text), HasSubstr("model.mil, line 1, column")) << text;
}

TEST(Literal, TakesStoredValuesFromTheSource)
{
    for (const char* const text :
        { "tensor<fp16, [64]>(BLOBFILE(path = string(\"@model_path/weights/w.bin\"), offset = uint64(4294967360)))",
            "tensor<fp16, [64]>(BLOBFILE(path = tensor<string, []>(\"@model_path/weights/w.bin\"), "
            "offset = tensor<uint64, []>(4294967360)))" }) {
        ZeroWeights weights;
        TokenStream stream(text);
        const Literal value = readLiteral(stream, weights);
        EXPECT_THAT(weights.requests, ElementsAre(testing::Pair("@model_path/weights/w.bin", 4294967360U)));
        EXPECT_EQ(value.constant->count(), 64);
    }
}

TEST(Literal, RefusesStoredValuesOfOpenShape)
{
    const std::string place = "(BLOBFILE(path = string(\"@model_path/w\"), offset = uint64(64)))";
    EXPECT_THAT(faultOfLiteral("tensor<fp16, [?]>" + place), HasSubstr("known shape"));
    EXPECT_THAT(faultOfLiteral("string" + place), HasSubstr("numeric type"));
    EXPECT_THAT(
        faultOfLiteral("fp16(BLOBFILE(path = int32(1), offset = uint64(64)))"), HasSubstr("a string as its path"));
    EXPECT_THAT(faultOfLiteral("fp16(BLOBFILE(path = string(\"p\"), offset = int32(64)))"), HasSubstr("a uint64"));
}

TEST(Literal, LimitsNesting)
{
    std::string type = "int32";
    std::string value = "1";
    for (int i = 0; i < 40; ++i) {
        type = "list<" + type + ", 1>";
        value = "[" + value + "]";
    }
    EXPECT_THAT(faultOfLiteral(type + "(" + value + ")"), HasSubstr("types are nested too deeply"));

    std::string path = "string(\"p\")";
    for (int i = 0; i < 40; ++i)
        path = "string(BLOBFILE(path = " + path;
    EXPECT_THAT(faultOfLiteral(path), HasSubstr("values are nested too deeply"));
}

TEST(Literal, RefusesTensorsOfStrings)
{
    EXPECT_THAT(errorOf([] { literal("tensor<string, [1]>([\"a\"])"); }, MLModelError::Case::unsupported),
        HasSubstr("tensors of strings are not supported"));
}

} // namespace
} // namespace MLProgram
