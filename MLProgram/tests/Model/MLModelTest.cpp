// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "AllocationCount.h"
#include "Model/TestBundles.h"
#include "Text/TextTesting.h"
#include "Weights/WeightFileBuilder.h"

#include <MLProgram/MLModel.h>
#include <PlatformSupport/Float16.h>

#include <gmock/gmock.h>

#include <algorithm>

namespace MLProgram {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Files = std::map<std::string, std::string>;

const std::string flexible
    = " [FlexibleShapeInformation = tuple<tuple<string, dict<string, tensor<int32, [?]>>>, tuple<string, dict<string, "
      "list<tensor<int32, [2]>, ?>>>>(((\"DefaultShapes\", {{\"x\", [2]}}), (\"RangeDims\", {{\"x\", [[0, 4]]}})))] ";

std::string program(const std::string& functions)
{
    return "program(1.3) {" + functions + "}";
}

const std::string doubled = program("func main<ios17>(tensor<fp32, [2]> x) "
                                    "{ tensor<fp32, [2]> y = add(x = x, y = x); } -> (y);");

MLModel load(const Files& files, const MLModelConfiguration& configuration = {})
{
    const TemporaryBundle bundle(files);
    return MLModel(bundle.path(), configuration);
}

std::string faultOfLoading(const Files& files, MLModelError::Case which)
{
    return errorOf([&] { load(files); }, which);
}

template <typename T>
std::shared_ptr<MLMultiArray> array(std::vector<int64_t> shape, MLMultiArrayDataType type, std::vector<T> values)
{
    auto made = std::make_shared<MLMultiArray>(std::move(shape), type);
    std::copy(values.begin(), values.end(), made->elements<T>().begin());
    return made;
}

std::shared_ptr<MLMultiArray> floats(const std::vector<float>& values)
{
    return array<float>({ static_cast<int64_t>(values.size()) }, MLMultiArrayDataType::float32, values);
}

MLDictionaryFeatureProvider input(const std::shared_ptr<MLMultiArray>& x)
{
    return MLDictionaryFeatureProvider({ { "x", MLFeatureValue(x) } });
}

std::vector<float> output(const MLDictionaryFeatureProvider& result, const std::string& name = "y")
{
    const auto elements = result.featureValue(name)->multiArrayValue()->elements<float>();
    return { elements.begin(), elements.end() };
}

std::string faultOfPrediction(
    MLModel& model, const MLDictionaryFeatureProvider& features, const MLPredictionOptions& options = {})
{
    return errorOf([&] { model.prediction(features, options); }, MLModelError::Case::invalidFeature);
}

TEST(MLModel, RunsAProgram)
{
    MLModel model = load({ { "model.mil", doubled } });
    EXPECT_THAT(output(model.prediction(input(floats({ 1, -2 })))), ElementsAre(2, -4));
    EXPECT_THAT(output(model.prediction(input(floats({ 3, 4 })))), ElementsAre(6, 8));
}

TEST(MLModel, DescribesItselfByItsSignatureWhenNothingElseDoes)
{
    const MLModel model = load({ { "model.mil",
        program("func main<ios17>(tensor<fp16, [2]> x, tensor<int32, [1, 3]> n) { tensor<bool, [2]> y = less(x = x, y "
                "= x); } "
                "-> (y);") } });
    const MLModelDescription& description = model.modelDescription();
    EXPECT_EQ(
        description.inputDescriptionsByName.at("x").multiArrayConstraint->dataType, MLMultiArrayDataType::float16);
    EXPECT_THAT(description.inputDescriptionsByName.at("n").multiArrayConstraint->shape, ElementsAre(1, 3));
    EXPECT_EQ(description.outputDescriptionsByName.at("y").multiArrayConstraint->dataType, MLMultiArrayDataType::int32);
}

TEST(MLModel, TakesTheDescriptionFromMetadata)
{
    const MLModel model = load({ { "model.mil", doubled },
        { "metadata.json",
            R"([{"inputSchema": [{"name": "x", "type": "MultiArray", "dataType": "Double", "shape": "[2]"}],
                "outputSchema": [{"name": "y", "type": "MultiArray", "dataType": "Float32", "shape": "[]"}],
                "userDefinedMetadata": {"k": "v"}}])" } });
    const MLModelDescription& description = model.modelDescription();
    EXPECT_EQ(
        description.inputDescriptionsByName.at("x").multiArrayConstraint->dataType, MLMultiArrayDataType::float64);
    EXPECT_THAT(description.outputDescriptionsByName.at("y").multiArrayConstraint->shape, ElementsAre(2));
    EXPECT_EQ(description.userDefinedMetadata.at("k"), "v");
}

TEST(MLModel, RefusesADescriptionOfSomethingElse)
{
    const std::string known = R"({"name": "x", "type": "MultiArray", "dataType": "Double", "shape": "[2]"})";
    EXPECT_EQ(faultOfLoading({ { "model.mil", doubled }, { "metadata.json", R"([{"inputSchema": [{"name": "z"}]}])" } },
                  MLModelError::Case::invalidProgram),
        "stage.mlmodelc: the description names a feature \"z\" that the program does not have.");
    for (const std::string shape : { "[3]", "[1, 2]", "[1, 1, 1, 1, 1, 1, 1, 1, 1]" })
        EXPECT_THAT(
            faultOfLoading(
                { { "model.mil", doubled },
                    { "metadata.json",
                        R"([{"inputSchema": [{"name": "x", "type": "MultiArray", "dataType": "Double", "shape": ")"
                            + shape + "\"}]}]" } },
                MLModelError::Case::invalidProgram),
            HasSubstr("a shape that it does not have"));
}

TEST(MLModel, ReadsWeightsFromTheBundle)
{
    WeightFileBuilder weights;
    weights.append(1, { 0x00, 0x3C, 0x00, 0xC0 });
    MLModel model = load({ { "weights/weight.bin", weights.text() },
        { "model.mil",
            program("func main<ios17>(tensor<fp16, [2]> x) { tensor<fp16, [2]> w = const()[val = tensor<fp16, [2]>("
                    "BLOBFILE(path = string(\"@model_path/weights/weight.bin\"), offset = uint64(64)))]; "
                    "tensor<fp16, [2]> y = mul(x = x, y = w); } -> (y, w);") } });
    const auto result = model.prediction(input(floats({ 3, 4 })));
    EXPECT_EQ(toFloat(result.featureValue("y")->multiArrayValue()->elements<PlatformSupport::Float16>()[1]), -8);
    EXPECT_EQ(toFloat(result.featureValue("w")->multiArrayValue()->elements<PlatformSupport::Float16>()[1]), -2);
}

TEST(MLModel, TakesTheNamedTheDefaultOrTheMainFunction)
{
    const std::string two
        = program("func a<ios18>(tensor<fp32, [1]> x) { tensor<fp32, [1]> y = add(x = x, y = x); } -> (y); "
                  "func main<ios18>(tensor<fp32, [1]> x) { tensor<fp32, [1]> y = mul(x = x, y = x); } -> (y);");
    const std::string metadata = R"([{"functions": [{"name": "a"}, {"name": "main"}], "defaultFunctionName": "a"}])";
    MLModel main = load({ { "model.mil", two } });
    MLModel byDefault = load({ { "model.mil", two }, { "metadata.json", metadata } });
    MLModel named = load({ { "model.mil", two }, { "metadata.json", metadata } }, { MLComputeUnits::cpuOnly, "main" });
    EXPECT_THAT(output(main.prediction(input(floats({ 3 })))), ElementsAre(9));
    EXPECT_THAT(output(byDefault.prediction(input(floats({ 3 })))), ElementsAre(6));
    EXPECT_THAT(output(named.prediction(input(floats({ 3 })))), ElementsAre(9));
    EXPECT_EQ(errorOf(
                  [&] {
                      load({ { "model.mil", two } }, { MLComputeUnits::all, "b" });
                  },
                  MLModelError::Case::invalidProgram),
        "stage.mlmodelc: there is no function \"b\".");
}

TEST(MLModel, ConvertsArraysToTheDeclaredType)
{
    MLModel model = load({ { "model.mil",
        program(
            "func main<ios17>(tensor<fp16, [2]> x, tensor<int32, [2]> n, tensor<bool, [2]> b) { } -> (x, n, b);") } });
    const auto features = [](const auto& x) {
        return MLDictionaryFeatureProvider(
            { { "x", MLFeatureValue(x) }, { "n", MLFeatureValue(x) }, { "b", MLFeatureValue(x) } });
    };
    const auto check = [&](const auto& x, float expected) {
        const auto result = model.prediction(features(x));
        EXPECT_EQ(
            toFloat(result.featureValue("x")->multiArrayValue()->template elements<PlatformSupport::Float16>()[1]),
            expected);
        EXPECT_THAT(result.featureValue("n")->multiArrayValue()->template elements<int32_t>(), ElementsAre(0, -2));
        EXPECT_THAT(result.featureValue("b")->multiArrayValue()->template elements<int32_t>(), ElementsAre(0, 1));
    };
    check(floats({ 0, -2.7F }), -2.6992188F);
    check(array<double>({ 2 }, MLMultiArrayDataType::float64, { 0, -2.5 }), -2.5F);
    check(array<int32_t>({ 2 }, MLMultiArrayDataType::int32, { 0, -2 }), -2);
    check(array<int8_t>({ 2 }, MLMultiArrayDataType::int8, { 0, -2 }), -2);
    check(array<PlatformSupport::Float16>(
              { 2 }, MLMultiArrayDataType::float16, { {}, PlatformSupport::toFloat16(-2.5F) }),
        -2.5F);
}

TEST(MLModel, AcceptsTheShapesOfARange)
{
    MLModel model = load({ { "model.mil",
        program(
            "func main<ios18>(tensor<fp32, [?]> x)" + flexible + "{ tensor<fp32, [?]> y = relu(x = x); } -> (y);") } });
    EXPECT_THAT(model.modelDescription().inputDescriptionsByName.at("x").multiArrayConstraint->shape, ElementsAre(2));
    EXPECT_THAT(output(model.prediction(input(floats({ -1, 2, 3, -4 })))), ElementsAre(0, 2, 3, 0));
    EXPECT_THAT(output(model.prediction(input(floats({ 5 })))), ElementsAre(5));
    EXPECT_THAT(output(model.prediction(input(floats({})))), IsEmpty());
    EXPECT_EQ(faultOfPrediction(model, input(floats({ 1, 2, 3, 4, 5 }))),
        "stage.mlmodelc: the input \"x\" has the shape [5], which is not one that it may have (tensor<fp32, [?]>).");
}

TEST(MLModel, AcceptsEnumeratedShapesOnly)
{
    MLModel model = load({ { "model.mil", program("func main<ios18>(tensor<fp32, [?]> x) { } -> (x);") },
        { "metadata.json",
            R"([{"inputSchema": [{"name": "x", "type": "MultiArray", "dataType": "Float32", "shape": "[1]",
                "hasShapeFlexibility": "1", "enumeratedShapes": "[[1], [4]]"}]}])" } });
    EXPECT_THAT(output(model.prediction(input(floats({ 1, 2, 3, 4 }))), "x"), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(faultOfPrediction(model, input(floats({ 1, 2 }))), HasSubstr("has the shape [2]"));
}

TEST(MLModel, RefusesInputsThatAreMissingOrOfAnotherShape)
{
    MLModel model = load({ { "model.mil", doubled } });
    EXPECT_EQ(faultOfPrediction(model, MLDictionaryFeatureProvider()), "stage.mlmodelc: the input \"x\" is missing.");
    EXPECT_EQ(faultOfPrediction(model, input(nullptr)), "stage.mlmodelc: the input \"x\" is missing.");
    EXPECT_THAT(faultOfPrediction(model, input(floats({ 1 }))), HasSubstr("has the shape [1]"));
    EXPECT_THAT(faultOfPrediction(model,
                    input(std::make_shared<MLMultiArray>(std::vector<int64_t>(9, 1), MLMultiArrayDataType::int8))),
        HasSubstr("has the shape [1, 1, 1, 1, 1, 1, 1, 1, 1]"));
}

TEST(MLModel, WritesOutputsIntoTheirBackings)
{
    MLModel model = load({ { "model.mil", doubled } });
    const auto backing = std::make_shared<MLMultiArray>(std::vector<int64_t> { 2 }, MLMultiArrayDataType::float16);
    const MLPredictionOptions options { { { "y", backing } } };
    const auto result = model.prediction(input(floats({ 1, 2 })), options);
    EXPECT_EQ(result.featureValue("y")->multiArrayValue(), backing);
    EXPECT_EQ(toFloat(backing->elements<PlatformSupport::Float16>()[1]), 4);
}

TEST(MLModel, LetsTwoOutputsShareAnArrayWhichHoldsTheLast)
{
    MLModel model = load({ { "model.mil",
        program("func main<ios17>(tensor<fp32, [2]> x) { tensor<fp32, [2]> y = add(x = x, y = x); "
                "tensor<fp32, [2]> z = mul(x = y, y = y); } -> (y, z);") } });
    MLPredictionOptions options;
    options.outputBackings["y"] = options.outputBackings["z"] = floats({ 0, 0 });
    for (const float value : { 1.0f, 3.0f }) {
        const auto result = model.prediction(input(floats({ value, 0 })), options);
        EXPECT_EQ(result.featureValue("y")->multiArrayValue(), result.featureValue("z")->multiArrayValue());
        EXPECT_THAT(output(result, "z"), ElementsAre(4 * value * value, 0));
    }
}

TEST(MLModel, GivesAnInputOutAgain)
{
    MLModel model = load({ { "model.mil",
        program("func main<ios17>(tensor<fp32, [2]> x) { tensor<fp32, [2]> y = add(x = x, y = x); } -> (y, x);") } });
    const auto result = model.prediction(input(floats({ 1, -2 })));
    EXPECT_THAT(output(result), ElementsAre(2, -4));
    EXPECT_THAT(output(result, "x"), ElementsAre(1, -2));
}

TEST(MLModel, MayWriteAnOutputOverItsInput)
{
    MLModel model = load({ { "model.mil", doubled } });
    const auto x = floats({ 1, 2 });
    const MLPredictionOptions options { { { "y", x } } };
    model.prediction(input(x), options);
    model.prediction(input(x), options);
    EXPECT_THAT(x->elements<float>(), ElementsAre(4, 8));
}

TEST(MLModel, RefusesBackingsThatDoNotFit)
{
    MLModel model = load({ { "model.mil", doubled } });
    const auto fault = [&](const std::string& name, const std::shared_ptr<MLMultiArray>& backing) {
        return faultOfPrediction(model, input(floats({ 1, 2 })), { { { name, backing } } });
    };
    EXPECT_EQ(fault("y", floats({ 1, 2, 3 })),
        "stage.mlmodelc: the output \"y\" has the shape tensor<fp32, [2]>, and its backing [3].");
    EXPECT_EQ(fault("y", std::make_shared<MLMultiArray>(std::vector<int64_t> { 2 }, MLMultiArrayDataType::int32)),
        "stage.mlmodelc: the output \"y\" cannot be stored in a backing of integers.");
    EXPECT_THAT(fault("z", floats({ 1, 2 })), HasSubstr("the output \"z\" does not exist"));
    EXPECT_THAT(fault("y", nullptr), HasSubstr("the output \"y\" does not exist, or its backing does not"));
}

// The result of the call before the failed one must not come back for the arrays of the failed one.
TEST(MLModel, NamesTheRightArraysAfterAFailure)
{
    MLModel model = load({ { "model.mil", program("func main<ios18>(tensor<fp32, [1]> x) { } -> (x);") } });
    const auto first = floats({ 0 });
    const auto second = floats({ 0 });
    model.prediction(input(floats({ 1 })), { { { "x", first } } });
    faultOfPrediction(model, input(floats({ 1, 2 })), { { { "x", second } } });
    EXPECT_EQ(
        model.prediction(input(floats({ 2 })), { { { "x", second } } }).featureValue("x")->multiArrayValue(), second);
}

TEST(MLModel, AllocatesNothingWhenOutputsAreBoundAndShapesRepeat)
{
    MLModel model = load({ { "model.mil",
        program(
            "func main<ios18>(tensor<fp16, [8]> x) { tensor<fp16, [8]> a = add(x = x, y = x); "
            "tensor<fp16, [8]> b = mul(x = a, y = fp16(0x1p-1)); tensor<fp16, [8]> y = relu(x = b); } -> (y);") } });
    const auto features = input(floats(std::vector<float>(8, 1)));
    const MLPredictionOptions options { { { "y", floats(std::vector<float>(8)) } } };
    model.prediction(features, options);
    model.prediction(features, options);
    const size_t before = allocationCount();
    model.prediction(features, options);
    EXPECT_EQ(allocationCount() - before, 0U);
}

TEST(MLModel, KeepsStatesBetweenPredictions)
{
    const std::string counter
        = program("func main<ios18>(tensor<fp32, [1]> x, state<tensor<fp32, [1]>> s) { tensor<fp32, [1]> old = "
                  "read_state(input = s); "
                  "tensor<fp32, [1]> y = add(x = x, y = old); write_state(data = y, input = s); } -> (y, old);");
    MLModel model = load({ { "model.mil", counter } });
    EXPECT_THAT(output(model.prediction(input(floats({ 1 })))), ElementsAre(1));
    EXPECT_THAT(output(model.prediction(input(floats({ 2 })))), ElementsAre(3));
    const auto third = model.prediction(input(floats({ 3 })));
    EXPECT_THAT(output(third), ElementsAre(6));
    EXPECT_THAT(output(third, "old"), ElementsAre(3)) << "a state that is read is not changed by what is written later";
}

TEST(MLModel, NamesAllUnknownOperationsSorted)
{
    EXPECT_EQ(
        faultOfLoading(
            { { "model.mil",
                program(
                    "func main<ios17>(bool x) { fp32 b = zebra(x = x); fp32 a = apple(x = b); "
                    "fp32 c = cond(pred = x) { } -> (); fp32 d = zebra(x = a); fp32 e = relu(x = d); } -> (e);") } },
            MLModelError::Case::unsupported),
        "stage.mlmodelc: the operations apple, cond and zebra are not supported.");
    EXPECT_EQ(faultOfLoading(
                  { { "model.mil", program("func main<ios17>(fp32 x) { fp32 y = relu(x = x) { } -> (); } -> (y);") } },
                  MLModelError::Case::unsupported),
        "stage.mlmodelc: the operation relu is not supported.");
}

TEST(MLModel, RefusesOtherKindsOfModels)
{
    const std::string text = "stage.mlmodelc: it is not an ML program.";
    for (const Files& files : { Files { { "model0/model.mil", doubled }, { "metadata.json", "[]" } },
             Files { { "model.espresso.net", "" }, { "coremldata.bin", "" } },
             Files { { "metadata.json", R"([{"modelType": {"name": "MLModelType_pipeline"}}])" },
                 { "model.mil", doubled } },
             Files { { "coremldata.bin", "abcd" }, { "model.mil", doubled } } })
        EXPECT_EQ(faultOfLoading(files, MLModelError::Case::unsupported), text);
}

TEST(MLModel, SaysWhichFileIsMissing)
{
    EXPECT_EQ(errorOf([] { MLModel("/nowhere/encoder.mlmodelc/"); }, MLModelError::Case::io),
        "encoder.mlmodelc: there is no such directory.");
    EXPECT_EQ(faultOfLoading({}, MLModelError::Case::io),
        "stage.mlmodelc: model.mil cannot be read: No such file or directory.");
}

TEST(MLModel, PutsThePlaceInFrontOfFaultsOfTheProgram)
{
    EXPECT_EQ(faultOfLoading({ { "model.mil", "program(1.3)\n{ func }" } }, MLModelError::Case::invalidProgram),
        "stage.mlmodelc: model.mil, line 2, column 8: the name of a function is expected, not \"}\".");
    MLModel model = load({ { "model.mil",
        program("func main<ios17>(tensor<fp32, [?]> x, tensor<fp32, [?]> z) {\n tensor<fp32, [2]> y = add(x = x, y = "
                "z); } -> (y);") } });
    const MLDictionaryFeatureProvider features(
        { { "x", MLFeatureValue(floats({ 1, 2, 3 })) }, { "z", MLFeatureValue(floats({ 1 })) } });
    EXPECT_EQ(errorOf([&] { model.prediction(features); }, MLModelError::Case::invalidProgram),
        "stage.mlmodelc: model.mil, line 2: add: \"y\" is declared as tensor<fp32, [2]> and is tensor<fp32, [3]>.");
}

TEST(MLModel, RefusesWhatIsNoTensor)
{
    for (const std::string function : { "func main<ios18>(list<fp32, 1> x) { } -> (x);",
             "func main<ios18>(fp32 x) { list<fp32, 1> y = relu(x = x); } -> (x);",
             "func main<ios18>(fp32 x) { string y = const()[val = string(\"a\")]; } -> (y);",
             "func main<ios18>(state<fp32> x) { } -> (x);" })
        EXPECT_THAT(faultOfLoading({ { "model.mil", program(function) } }, MLModelError::Case::unsupported),
            HasSubstr("stage.mlmodelc: "))
            << function;
    EXPECT_THAT(faultOfLoading(
                    { { "model.mil", program("func main<ios18>(state<fp32> x) { fp32 y = relu(x = x); } -> (y);") } },
                    MLModelError::Case::invalidProgram),
        HasSubstr("relu: \"x\" is a state"));
    EXPECT_THAT(faultOfLoading({ { "model.mil",
                                   program("func main<ios18>(fp32 x) { fp32 y = read_state(input = x); } -> (y);") } },
                    MLModelError::Case::invalidProgram),
        HasSubstr("read_state: \"input\" is no state"));
}

TEST(MLModel, RefusesWeightsThatAreNotConstant)
{
    EXPECT_THAT(faultOfLoading({ { "model.mil",
                                   program("func main<ios18>(fp16 x) { fp32 y = constexpr_cast(source_val = x, "
                                           "output_dtype = string(\"fp32\")); } -> (y);") } },
                    MLModelError::Case::invalidProgram),
        HasSubstr("\"x\" is not known when the program is loaded"));
    EXPECT_THAT(
        faultOfLoading({ { "model.mil",
                           program("func main<ios18>(fp16 x) { tensor<fp32, [?]> y = constexpr_cast(source_val = x, "
                                   "output_dtype = string(\"fp32\")); } -> (y);") } },
            MLModelError::Case::invalidProgram),
        HasSubstr("the shape of a weight is open"));
}

} // namespace
} // namespace MLProgram
