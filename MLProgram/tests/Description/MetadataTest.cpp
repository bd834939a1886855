// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Description/Metadata.h"

#include "Text/TextTesting.h"

#include <gmock/gmock.h>

namespace MLProgram {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

std::string feature(const std::string& more)
{
    return R"({"name": "x", "type": "MultiArray", "isOptional": "0", "dataType": "Float32", )" + more + "}";
}

std::string model(const std::string& inputs, const std::string& more = "")
{
    return R"([{"modelType": {"name": "MLModelType_mlProgram"}, "inputSchema": [)" + inputs + "]" + more + "}]";
}

MLMultiArrayConstraint constraintOf(const std::string& more)
{
    return readMetadata(model(feature(more)))
        .function("main")
        ->inputDescriptionsByName.at("x")
        .multiArrayConstraint.value();
}

TEST(Metadata, ReadsAFeature)
{
    const BundleDescription description = readMetadata(model(feature(R"("shape": "[1, 64, 200]")"),
        R"(, "userDefinedMetadata": {"com.example.rate": "16000", "other": 1}, "outputSchema": [])"));
    const MLModelDescription* const main = description.function("main");
    ASSERT_NE(main, nullptr);
    const MLFeatureDescription& x = main->inputDescriptionsByName.at("x");
    EXPECT_EQ(x.name, "x");
    EXPECT_FALSE(x.isOptional);
    EXPECT_THAT(x.multiArrayConstraint->shape, ElementsAre(1, 64, 200));
    EXPECT_EQ(x.multiArrayConstraint->dataType, MLMultiArrayDataType::float32);
    EXPECT_THAT(main->outputDescriptionsByName, IsEmpty());
    EXPECT_THAT(main->userDefinedMetadata, ElementsAre(Pair("com.example.rate", "16000")));
    EXPECT_EQ(description.defaultFunctionName, "");
}

TEST(Metadata, ReadsEveryElementType)
{
    const std::vector<std::pair<std::string, MLMultiArrayDataType>> names {
        { "Float16", MLMultiArrayDataType::float16 }, { "Double", MLMultiArrayDataType::float64 },
        { "Int32", MLMultiArrayDataType::int32 }, { "Int8", MLMultiArrayDataType::int8 }
    };
    for (const auto& [name, type] : names)
        EXPECT_EQ(readMetadata(model(R"({"name": "x", "type": "MultiArray", "dataType": ")" + name + "\"}"))
                      .function("")
                      ->inputDescriptionsByName.at("x")
                      .multiArrayConstraint->dataType,
            type);
    EXPECT_EQ(errorOf([] { readMetadata(model(R"({"name": "x", "type": "MultiArray", "dataType": "Int64"})")); },
                  MLModelError::Case::unsupported),
        "the feature \"x\" has elements of the unknown type \"Int64\"");
}

TEST(Metadata, ReadsRangesAndEnumeratedShapes)
{
    const MLMultiArrayConstraint range
        = constraintOf(R"("shape": "[1, 4]", "hasShapeFlexibility": "1", "shapeRange": "[[1, -1], [4, 4]]")");
    EXPECT_THAT(range.shape, ElementsAre(1, 4));
    EXPECT_THAT(range.shapeRange, ElementsAre(Pair(1, -1), Pair(4, 4)));
    const MLMultiArrayConstraint enumerated
        = constraintOf(R"("shape": "[4]", "hasShapeFlexibility": "1", "enumeratedShapes": "[[1], [2], [4]]")");
    EXPECT_THAT(enumerated.enumeratedShapes, ElementsAre(ElementsAre(1), ElementsAre(2), ElementsAre(4)));
    EXPECT_THAT(
        constraintOf(R"("shape": "[4]", "hasShapeFlexibility": "0", "shapeRange": "[[1, 4]]")").shapeRange, IsEmpty());
}

TEST(Metadata, LeavesAbsentShapesEmpty)
{
    EXPECT_THAT(constraintOf(R"("shape": "[]")").shape, IsEmpty());
    EXPECT_THAT(constraintOf(R"("shape": "")").shape, IsEmpty());
    EXPECT_THAT(constraintOf(R"("formattedType": "MultiArray")").shape, IsEmpty());
}

TEST(Metadata, GivesFeaturesThatAreNoArraysNoConstraint)
{
    const BundleDescription description
        = readMetadata(model(R"({"name": "i", "type": "Image", "width": "8", "isOptional": "1"})"));
    const MLFeatureDescription& image = description.function("main")->inputDescriptionsByName.at("i");
    EXPECT_FALSE(image.multiArrayConstraint.has_value());
    EXPECT_TRUE(image.isOptional);
}

TEST(Metadata, ReadsSeveralFunctions)
{
    const BundleDescription description = readMetadata(model(feature(R"("shape": "[2]")"),
        R"(, "defaultFunctionName": "b", "functions": [
            {"name": "a", "inputSchema": [{"name": "y", "type": "MultiArray", "dataType": "Int32", "shape": "[4]"}]},
            {"name": "b", "outputSchema": []}])"));
    EXPECT_EQ(description.defaultFunctionName, "b");
    EXPECT_TRUE(description.function("a")->inputDescriptionsByName.contains("y"));
    EXPECT_THAT(description.function("b")->inputDescriptionsByName, IsEmpty());
    EXPECT_EQ(description.function("c"), nullptr);
}

TEST(Metadata, TellsOtherKindsOfModels)
{
    EXPECT_FALSE(readMetadata(R"([{"modelType": {"name": "MLModelType_pipeline"}, "inputSchema": 3}])").isProgram);
    EXPECT_TRUE(readMetadata("[{}]").isProgram);
}

TEST(Metadata, RefusesOtherForms)
{
    for (const std::string json : { "", "{}", "[]", "[1]", "[{]", "null", "[[]]", R"([{"inputSchema": 1}])",
             R"([{"inputSchema": [1]}])", R"([{"functions": [1]}])" })
        EXPECT_THAT(
            errorOf([&] { readMetadata(json); }, MLModelError::Case::invalidProgram), HasSubstr("metadata.json: "))
            << json;
    for (const std::string shape :
        { R"("shape": "x")", R"("shape": "1")", R"("shape": "[1.5]")", R"("shape": "[\"1\"]")",
            R"("shape": "[99999999999999999999]")", R"("hasShapeFlexibility": "1", "shapeRange": "[[1]]")",
            R"("hasShapeFlexibility": "1", "enumeratedShapes": "[1]")" })
        EXPECT_THAT(errorOf([&] { readMetadata(model(feature(shape))); }, MLModelError::Case::invalidProgram),
            HasSubstr("metadata.json: "))
            << shape;
}

} // namespace
} // namespace MLProgram
