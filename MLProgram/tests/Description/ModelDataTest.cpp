// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Description/ModelData.h"

#include "Text/TextTesting.h"

#include <gmock/gmock.h>

namespace MLProgram {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

std::string variable(uint64_t number)
{
    std::string bytes;
    for (; number >= 0x80; number >>= 7U)
        bytes += static_cast<char>(number | 0x80U);
    return bytes + static_cast<char>(number);
}

std::string number(uint64_t field, uint64_t value)
{
    return variable(field << 3U) + variable(value);
}

std::string bytes(uint64_t field, const std::string& content)
{
    return variable(field << 3U | 2U) + variable(content.size()) + content;
}

std::string fixed(uint64_t value, size_t size)
{
    std::string content;
    for (size_t i = 0; i < size; ++i)
        content += static_cast<char>(value >> (8U * i));
    return content;
}

std::string container(const std::string& message, uint32_t kind = 502)
{
    return fixed(kind, 4) + fixed(9, 4) + std::string(20, '\0') + fixed(7, 8) + "generic" + fixed(9, 4)
        + std::string(28, '\0') + fixed(message.size(), 8) + message + fixed(502, 4) + std::string(12, '\0');
}

BundleDescription read(const std::string& content)
{
    return readModelData(std::as_bytes(std::span(content)));
}

// A feature "x" whose array type has these fields.
std::string feature(const std::string& array, const std::string& type = "")
{
    return bytes(1, "x") + bytes(3, bytes(5, array) + type);
}

MLMultiArrayConstraint constraintOf(const std::string& array)
{
    return read(container(bytes(1, feature(array))))
        .function("main")
        ->inputDescriptionsByName.at("x")
        .multiArrayConstraint.value();
}

TEST(ModelData, ReadsFeaturesAndMetadata)
{
    const BundleDescription description = read(container(bytes(1, feature(bytes(1, "\x01\x0A") + number(2, 65552)))
        + bytes(10, bytes(1, "y") + bytes(3, bytes(5, number(2, 131104)))) + bytes(11, "label")
        + bytes(100, bytes(100, bytes(1, "key") + bytes(2, "value")))));
    const MLModelDescription& main = *description.function("main");
    const MLMultiArrayConstraint& x = *main.inputDescriptionsByName.at("x").multiArrayConstraint;
    EXPECT_THAT(x.shape, ElementsAre(1, 10));
    EXPECT_EQ(x.dataType, MLMultiArrayDataType::float16);
    EXPECT_EQ(main.outputDescriptionsByName.at("y").multiArrayConstraint->dataType, MLMultiArrayDataType::int32);
    EXPECT_THAT(main.userDefinedMetadata, ElementsAre(Pair("key", "value")));
}

TEST(ModelData, ReadsShapesPackedOrNot)
{
    EXPECT_THAT(constraintOf(number(1, 3) + number(1, 300)).shape, ElementsAre(3, 300));
    EXPECT_THAT(constraintOf(bytes(1, variable(3) + variable(300))).shape, ElementsAre(3, 300));
    EXPECT_THAT(constraintOf("").shape, IsEmpty());
}

TEST(ModelData, ReadsFlexibleShapes)
{
    const uint64_t none = static_cast<uint64_t>(-1);
    EXPECT_THAT(
        constraintOf(bytes(31, bytes(1, number(1, 1) + number(2, none)) + bytes(1, number(1, 4) + number(2, 4))))
            .shapeRange,
        ElementsAre(Pair(1, -1), Pair(4, 4)));
    EXPECT_THAT(constraintOf(bytes(21, bytes(1, number(1, 1)) + bytes(1, bytes(1, "\x02")))).enumeratedShapes,
        ElementsAre(ElementsAre(1), ElementsAre(2)));
}

TEST(ModelData, ReadsEveryElementType)
{
    EXPECT_EQ(constraintOf(number(2, 65568)).dataType, MLMultiArrayDataType::float32);
    EXPECT_EQ(constraintOf(number(2, 65600)).dataType, MLMultiArrayDataType::float64);
    EXPECT_EQ(constraintOf(number(2, 131080)).dataType, MLMultiArrayDataType::int8);
    EXPECT_EQ(errorOf([] { constraintOf(number(2, 1)); }, MLModelError::Case::unsupported),
        "a feature has elements of the unknown type 1");
}

TEST(ModelData, ReadsSeveralFunctions)
{
    const BundleDescription description = read(container(bytes(20, bytes(1, "a") + bytes(2, feature("")))
        + bytes(20, bytes(1, "b") + bytes(3, bytes(1, "y"))) + bytes(21, "b")));
    EXPECT_EQ(description.defaultFunctionName, "b");
    EXPECT_TRUE(description.function("a")->inputDescriptionsByName.contains("x"));
    EXPECT_FALSE(description.function("b")->outputDescriptionsByName.at("y").multiArrayConstraint.has_value());
}

TEST(ModelData, ReadsOptionalFeaturesAndSkipsUnknownFields)
{
    const std::string unknown = variable(99U << 3U | 5U) + fixed(1, 4) + variable(98U << 3U | 1U) + fixed(1, 8);
    const BundleDescription description = read(container(bytes(1, feature("", number(1000, 1)) + unknown)));
    EXPECT_TRUE(description.function("")->inputDescriptionsByName.at("x").isOptional);
}

TEST(ModelData, TellsOtherKindsOfModels)
{
    EXPECT_FALSE(read(container("", 202)).isProgram);
    EXPECT_TRUE(read(container("")).isProgram);
}

TEST(ModelData, RefusesDamagedFiles)
{
    const std::string whole = container(bytes(1, feature(number(1, 3))));
    const size_t trailer = 16;
    for (size_t size = 0; size < whole.size() - trailer; ++size)
        EXPECT_EQ(errorOf([&] { read(whole.substr(0, size)); }, MLModelError::Case::invalidProgram),
            "coremldata.bin is damaged")
            << size;
    for (const std::string& message : { std::string("\x0A\x05x"), std::string("\x0B"), std::string("\x0D\x01"),
             std::string(11, '\xFF'), number(1, 1), bytes(1, bytes(3, bytes(5, bytes(2, "")))) })
        EXPECT_EQ(errorOf([&] { read(container(message)); }, MLModelError::Case::invalidProgram),
            "coremldata.bin is damaged");
}

TEST(ModelData, RefusesALengthBeyondAllReason)
{
    std::string damaged = container("");
    damaged.replace(28, 8, 8, '\xFF');
    EXPECT_EQ(errorOf([&] { read(damaged); }, MLModelError::Case::invalidProgram), "coremldata.bin is damaged");
}

} // namespace
} // namespace MLProgram
