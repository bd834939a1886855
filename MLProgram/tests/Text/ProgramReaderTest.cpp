// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Text/ProgramReader.h"

#include "Text/TextTesting.h"

#include <gmock/gmock.h>

namespace MLProgram {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const Value& valueOf(const Function& function, const Operation& operation, std::string_view parameter)
{
    return function.values[operation.argument(parameter)->values.front()];
}

TEST(ProgramReader, ReadsAProgramOfTheOlderSpelling)
{
    const Program program = read(R"(program(1.0)
[buildInfo = dict<tensor<string, []>, tensor<string, []>>({{"coremlc-version", "3405.2.1"}})]
{
    func main<ios16>(tensor<fp16, [1, 10]> x) {
            tensor<fp16, []> half = const()[name = tensor<string, []>("half_0"), val = tensor<fp16, []>(0x1p-1)];
            tensor<fp16, [1, 10]> y = mul(x = x, y = half)[name = tensor<string, []>("op_3")];
        } -> (y);
})");
    ASSERT_EQ(program.functions.size(), 1U);
    const Function& main = program.functions.front();
    EXPECT_EQ(main.name, "main");
    EXPECT_EQ(main.opset, 16);
    ASSERT_EQ(main.operations.size(), 1U);
    const Operation& mul = main.operations.front();
    EXPECT_EQ(mul.name, "mul");
    EXPECT_EQ(mul.opset, 16);
    EXPECT_EQ(mul.line, 6U);
    EXPECT_EQ(valueOf(main, mul, "x").name, "x");
    EXPECT_THAT(reals(*valueOf(main, mul, "y").constant), ElementsAre(0.5F));
    EXPECT_EQ(mul.outputs, main.outputs);
    EXPECT_EQ(main.values[main.outputs.front()].name, "y");
}

TEST(ProgramReader, ReadsValuesInPlaceAndLists)
{
    const Program program = read(mainFunction("fp32 x, fp32 z",
        "tensor<fp32, [3]> y = concat(axis = int32(0), interleave = bool(false), values = (x, fp32(0x1p+1), z));"));
    const Function& main = program.functions.front();
    const Operation& concat = main.operations.front();
    const auto& values = concat.argument("values")->values;
    ASSERT_EQ(values.size(), 3U);
    EXPECT_EQ(main.values[values[0]].name, "x");
    EXPECT_EQ(main.values[values[1]].name, "");
    EXPECT_THAT(reals(*main.values[values[1]].constant), ElementsAre(2));
    EXPECT_EQ(concat.argument("absent"), nullptr);
}

TEST(ProgramReader, TellsValuesFromTypesByTheirPlace)
{
    const Program program = read(mainFunction("fp32 bool, fp32 tensor, fp32 list",
        "fp32 string = add(x = bool, y = tensor); fp32 func = add(x = string, y = list);", "func"));
    const Function& main = program.functions.front();
    EXPECT_EQ(valueOf(main, main.operations[0], "x").name, "bool");
    EXPECT_EQ(valueOf(main, main.operations[1], "x").name, "string");
    EXPECT_EQ(valueOf(main, main.operations[1], "y").name, "list");
}

TEST(ProgramReader, ReadsSeveralOutputsAndNone)
{
    const Program program = read(mainFunction("tensor<fp32, [4]> x, state<tensor<fp16, [2]>> s",
        "tensor<fp32, [2]> a, tensor<fp32, [2]> b = split(x = x, num_splits = int32(2), axis = int32(0));\n"
        "write_state(data = x, input = s)[name = string(\"w\")];",
        "b, x, b"));
    const Function& main = program.functions.front();
    ASSERT_EQ(main.operations.size(), 2U);
    EXPECT_EQ(main.operations[0].outputs.size(), 2U);
    EXPECT_THAT(main.operations[1].outputs, IsEmpty());
    EXPECT_EQ(main.values[main.parameters[1]].type.kind, ValueType::Kind::state);
    EXPECT_THAT(
        main.outputs, ElementsAre(main.operations[0].outputs[1], main.parameters[0], main.operations[0].outputs[1]));
}

TEST(ProgramReader, ReadsAnOpsetOfASingleOperation)
{
    const Program program = read(mainFunction("fp32 x", "fp32 y = relu<ios15>(x = x);"));
    EXPECT_EQ(program.functions.front().operations.front().opset, 15);
    EXPECT_EQ(
        errorOf([] { read(mainFunction("fp32 x", "fp32 y = relu<mac1>(x = x);")); }, MLModelError::Case::unsupported),
        "model.mil, line 3, column 15: the opset \"mac1\" is not supported");
}

TEST(ProgramReader, MakesArgumentsOfTheAttributesOfWeightDecoders)
{
    const Program program = read(mainFunction("",
        "tensor<fp32, [2]> w = constexpr_affine_dequantize()[axis = int32(0), name = string(\"w\"), "
        "quantized_data = tensor<int8, [2]>([1, 2]), scale = fp32(0x1p-1), zero_point = int8(-1)];"));
    const Function& main = program.functions.front();
    const Operation& decoder = main.operations.front();
    EXPECT_EQ(decoder.arguments.size(), 4U);
    EXPECT_EQ(decoder.argument("name"), nullptr);
    EXPECT_THAT(reals(*valueOf(main, decoder, "quantized_data").constant), ElementsAre(1, 2));
}

TEST(ProgramReader, DropsTheAttributesOfOtherOperations)
{
    const Program program = read(
        mainFunction("fp32 x", "fp32 y = relu(x = x)[name = string(\"r\"), EstimatedRunTime = fp64(4.096e-05)];"));
    EXPECT_EQ(program.functions.front().operations.front().arguments.size(), 1U);
}

TEST(ProgramReader, ReadsSeveralFunctions)
{
    const Program program = read("program(1.3) { func a<ios18>(fp32 x) { } -> (x); func b<ios18>(fp32 x) { } -> (x) }");
    EXPECT_EQ(program.functions.size(), 2U);
    EXPECT_NE(program.function("b"), nullptr);
    EXPECT_EQ(program.function("c"), nullptr);
    EXPECT_EQ(faultOf("program(1.3) { func a<ios18>(fp32 x) { } -> (x); func a<ios18>(fp32 x) { } -> (x); }"),
        "model.mil, line 1, column 50: there are two functions named \"a\"");
}

TEST(ProgramReader, ReadsRangesOfShapes)
{
    const Program program = read(R"(program(1.3) { func main<ios17>(tensor<fp32, [?, 4]> x)
        [FlexibleShapeInformation = tuple<tuple<string, dict<string, tensor<int32, [?]>>>,
            tuple<string, dict<string, list<tensor<int32, [2]>, ?>>>>(
            (("DefaultShapes", {{"x", [1, 4]}}), ("RangeDims", {{"x", [[1, -1], [4, 4]]}})))] { } -> (x); })");
    const ShapeFlexibility& flexibility = program.functions.front().flexibility.at("x");
    EXPECT_THAT(flexibility.defaultShape, ElementsAre(1, 4));
    EXPECT_THAT(flexibility.ranges, ElementsAre(testing::Pair(1, -1), testing::Pair(4, 4)));
    EXPECT_THAT(flexibility.enumeratedShapes, IsEmpty());
}

TEST(ProgramReader, ReadsEnumeratedShapes)
{
    const Program program = read(R"(program(1.3) { func main<ios17>(tensor<fp32, [?]> x)
        [FlexibleShapeInformation = tuple<tuple<string, dict<string, tensor<int32, [?]>>>,
            tuple<string, dict<string, dict<string, tensor<int32, [?]>>>>>(
            (("DefaultShapes", {{"x", [4]}}), ("EnumeratedShapes", {{"a1", {{"x", [1]}}}, {"b2", {{"x", [4]}}}})))]
        { } -> (x); })");
    const ShapeFlexibility& flexibility = program.functions.front().flexibility.at("x");
    EXPECT_THAT(flexibility.enumeratedShapes, ElementsAre(ElementsAre(1), ElementsAre(4)));
    EXPECT_THAT(flexibility.ranges, IsEmpty());
}

TEST(ProgramReader, PassesOverAnEmptyShapeInformation)
{
    const Program program = read("program(1.3) { func main<ios17>(fp32 x) "
                                 "[FlexibleShapeInformation = tuple<tuple<string, string>>()] { } -> (x); }");
    EXPECT_THAT(program.functions.front().flexibility, IsEmpty());
}

TEST(ProgramReader, RefusesShapeInformationOfAnotherForm)
{
    EXPECT_THAT(faultOf("program(1.3) { func main<ios17>(fp32 x) [FlexibleShapeInformation = int32(1)] { } -> (x); }"),
        HasSubstr("model.mil, line 1, column 42: the shape information of the function has an unknown form"));
}

TEST(ProgramReader, KeepsNestedBlocksForTheCatalogueToRefuse)
{
    const Program program = read(mainFunction("bool x",
        "fp32 y = cond(pred = x) { fp32 a = const()[val = fp32(1)]; } -> (a) { (fp32 b) { } -> (b); } -> (b);", "y"));
    EXPECT_TRUE(program.functions.front().operations.front().hasNestedBlocks);
    EXPECT_THAT(faultOf("program(1.3) { func f<ios17>(bool x) { fp32 y = cond(pred = x) { "),
        HasSubstr("a block does not end"));
    EXPECT_THAT(faultOf(mainFunction("bool x", "fp32 y = cond(pred = x) { } ) ;")), HasSubstr("closes nothing"));
}

TEST(ProgramReader, RefusesNamesThatAreDefinedTwice)
{
    EXPECT_EQ(faultOf(mainFunction("fp32 x, fp32 x", "")), "model.mil, line 2, column 33: \"x\" is defined twice");
    EXPECT_THAT(faultOf(mainFunction("fp32 x", "fp32 x = relu(x = x);")), HasSubstr("\"x\" is defined twice"));
    EXPECT_THAT(faultOf(mainFunction("fp32 x", "fp32 y, fp32 y = f(x = x);")), HasSubstr("\"y\" is defined twice"));
    EXPECT_THAT(faultOf(mainFunction("fp32 x", "fp32 y = f(x = x, x = x);")), HasSubstr("\"x\" is given twice"));
}

TEST(ProgramReader, RefusesNamesThatAreNotDefined)
{
    EXPECT_EQ(faultOf(mainFunction("fp32 x", "fp32 y = relu(x = z);")),
        "model.mil, line 3, column 19: \"z\" is not defined before this place");
    EXPECT_THAT(faultOf(mainFunction("fp32 x", "fp32 y = relu(x = y);")), HasSubstr("\"y\" is not defined"));
    EXPECT_THAT(faultOf(mainFunction("fp32 x", "", "y")), HasSubstr("\"y\" is not defined"));
}

TEST(ProgramReader, RefusesConstantsThatAreNotWhatTheyAreDeclaredToBe)
{
    EXPECT_THAT(faultOf(mainFunction("", "fp32 a = const()[val = fp16(0x1p+0)];")), HasSubstr("declared as fp32"));
    EXPECT_THAT(faultOf(mainFunction("", "tensor<fp32, [2]> a = const()[val = tensor<fp32, [1]>([1])];")),
        HasSubstr("declared as tensor<fp32, [2]>"));
    EXPECT_THAT(
        faultOf(mainFunction("", "fp32 a = const()[name = string(\"a\")];")), HasSubstr("no tensor as its value"));
    EXPECT_THAT(faultOf(mainFunction("", "list<fp32, 0> a = const()[val = list<fp32, 0>()];")), HasSubstr("no tensor"));
    EXPECT_THAT(faultOf(mainFunction("", "fp32 a, fp32 b = const()[val = fp32(1)];")), HasSubstr("is one value"));
    EXPECT_THAT(faultOf(mainFunction("", "const()[val = fp32(1)];")), HasSubstr("is one value"));
}

TEST(ProgramReader, RefusesSizesBeyondAllReason)
{
    EXPECT_THAT(faultOf(mainFunction("tensor<fp32, [2147483648]> x", "")), HasSubstr("out of range"));
    EXPECT_THAT(faultOf(mainFunction("tensor<fp32, [-1]> x", "")), HasSubstr("out of range"));
    EXPECT_THAT(faultOf(mainFunction("tensor<fp32, [65536, 65536]> x", "")), HasSubstr("too many elements"));
    EXPECT_THAT(faultOf(mainFunction("tensor<fp32, [2000000000, 2000000000, 2000000000]> x", "")),
        HasSubstr("too many elements"));
    EXPECT_THAT(
        faultOf(mainFunction("tensor<fp32, [99999999999999999999]> x", "")), HasSubstr("a dimension is expected"));
    EXPECT_THAT(errorOf([] { read(mainFunction("tensor<fp32, [1, 1, 1, 1, 1, 1, 1, 1, 1]> x", "")); },
                    MLModelError::Case::unsupported),
        HasSubstr("more than 8 dimensions"));
}

TEST(ProgramReader, SaysWhatWasExpectedAndWhere)
{
    EXPECT_EQ(faultOf("programme(1.0)"), "model.mil, line 1, column 1: program is expected, not \"programme\"");
    EXPECT_EQ(faultOf(""), "model.mil, line 1, column 1: program is expected, not the end of the text");
    EXPECT_EQ(
        faultOf("program(1.0) { } x"), "model.mil, line 1, column 18: the end of the text is expected, not \"x\"");
    EXPECT_EQ(faultOf(mainFunction("half x", "")), "model.mil, line 2, column 20: \"half\" is no type");
    EXPECT_EQ(
        faultOf(mainFunction("tensor<half, []> x", "")), "model.mil, line 2, column 27: \"half\" is no element type");
    EXPECT_EQ(faultOf(mainFunction("fp32 x", "fp32 y = relu(x = x)")),
        "model.mil, line 4, column 1: ; is expected, not \"}\"");
    EXPECT_EQ(faultOf(mainFunction("fp32 " + std::string(50, 'a') + " =", "")),
        "model.mil, line 2, column 76: ) is expected, not \"=\"");
    EXPECT_EQ(errorOf([] { read("program(2.0) { }"); }, MLModelError::Case::unsupported),
        "model.mil, line 1, column 9: version 2.0 of the program text is not supported");
}

TEST(ProgramReader, AddsThePlaceToErrorsOfTheWeights)
{
    class NoWeights final : public WeightSource {
        Constant read(std::string_view, uint64_t, ScalarType, const Shape&) override
        {
            throw MLModelError(MLModelError::Case::io, "no file");
        }
    } weights;
    const std::string text = mainFunction(
        "", "fp16 a = const()[val = fp16(BLOBFILE(path = string(\"@model_path/w\"), offset = uint64(64)))];");
    EXPECT_EQ(
        errorOf([&] { readProgram(text, weights); }, MLModelError::Case::io), "model.mil, line 3, column 29: no file");
}

} // namespace
} // namespace MLProgram
