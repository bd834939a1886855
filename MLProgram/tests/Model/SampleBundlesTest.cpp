// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Model/NpyFile.h"
#include "Model/TestBundles.h"

#include <MLProgram/MLModel.h>
#include <PlatformSupport/Float16.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

// Bundles beside what they are expected to give: NAME.mlmodelc and NAME.expected, or NAME.expected.FUNCTION, with
//
//   in.INPUT.npy                          what the function is given
//   out.[POSITION.]OUTPUT.npy             its outputs, every value rounded to 16 bits after each statement
//   out32.[POSITION.]OUTPUT.npy           the same, nothing rounded on the way
//
// Those two bracket what a sound runtime gives. Further bundles are taken from the folder that the environment
// variable SORVANE_EXTRA_BUNDLES names.
namespace MLProgram {
namespace {

struct Sample {
    std::filesystem::path bundle;
    std::filesystem::path expected;
    std::string function;
};

void PrintTo(const Sample& sample, std::ostream* stream)
{
    *stream << sample.expected;
}

void appendSamples(const std::filesystem::path& folder, std::vector<Sample>& samples)
{
    const std::regex pattern(R"((.+)\.expected(\.(.+))?)");
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        std::smatch match;
        if (std::regex_match(name, match, pattern))
            samples.push_back({ folder / (match[1].str() + ".mlmodelc"), entry.path(), match[3].str() });
    }
}

std::vector<Sample> allSamples()
{
    std::vector<Sample> samples;
    appendSamples(testBundles(), samples);
    if (const char* const extra = std::getenv("SORVANE_EXTRA_BUNDLES"))
        appendSamples(extra, samples);
    else
        std::cerr << "SORVANE_EXTRA_BUNDLES is not set: only the project's own bundles are tested\n";
    std::sort(samples.begin(), samples.end(),
        [](const Sample& left, const Sample& right) { return left.expected < right.expected; });
    return samples;
}

// The files of a folder whose names begin with `kind` and a point, by the name of the feature.
std::map<std::string, std::shared_ptr<MLMultiArray>> arrays(
    const std::filesystem::path& folder, const std::string& kind)
{
    const std::regex pattern(kind + R"(\.(?:[0-9]+\.)?(.+)\.npy)");
    std::map<std::string, std::shared_ptr<MLMultiArray>> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        std::smatch match;
        if (std::regex_match(name, match, pattern))
            found.emplace(match[1].str(), readNpy(entry.path()));
    }
    return found;
}

std::vector<double> values(const MLMultiArray& array)
{
    const auto copied = [](auto elements) {
        std::vector<double> found;
        for (const auto element : elements) {
            if constexpr (std::is_same_v<decltype(element), const PlatformSupport::Float16>)
                found.push_back(static_cast<double>(toFloat(element)));
            else
                found.push_back(static_cast<double>(element));
        }
        return found;
    };
    switch (array.dataType()) {
    case MLMultiArrayDataType::float16:
        return copied(array.elements<PlatformSupport::Float16>());
    case MLMultiArrayDataType::float32:
        return copied(array.elements<float>());
    case MLMultiArrayDataType::float64:
        return copied(array.elements<double>());
    case MLMultiArrayDataType::int32:
        return copied(array.elements<int32_t>());
    case MLMultiArrayDataType::int8:
        break;
    }
    return copied(array.elements<int8_t>());
}

double largestDifference(const std::vector<double>& left, const std::vector<double>& right)
{
    double largest = 0;
    for (size_t i = 0; i < left.size(); ++i) {
        if (left[i] != right[i])
            largest = std::max(largest, std::abs(left[i] - right[i]));
    }
    return largest;
}

// Three times what rounding to 16 bits does, and where nothing is rounded, 1e-4 of the largest value. A result in
// 16 bits is off by half its last place besides.
double tolerance(const std::vector<double>& rounded, const std::vector<double>& exact, const MLMultiArray& actual)
{
    constexpr double halfOfLastPlace = 0x1p-11;
    double largest = 0;
    for (const double value : exact)
        largest = std::max(largest, std::abs(value));
    const double difference = largestDifference(rounded, exact);
    const double storage = actual.dataType() == MLMultiArrayDataType::float16 ? largest * halfOfLastPlace : 0;
    return 1e-5 + storage + (difference > 0 ? 3 * difference : 1e-4 * largest);
}

class SampleBundles : public testing::TestWithParam<Sample> { };

TEST_P(SampleBundles, GiveTheExpectedValues)
{
    const Sample& sample = GetParam();
    MLModel model(sample.bundle, { MLComputeUnits::cpuOnly, sample.function });
    std::map<std::string, MLFeatureValue> inputs;
    for (const auto& [name, array] : arrays(sample.expected, "in"))
        inputs.emplace(name, MLFeatureValue(array));
    const MLDictionaryFeatureProvider result = model.prediction(MLDictionaryFeatureProvider(inputs));

    const auto rounded = arrays(sample.expected, "out");
    const auto exact = arrays(sample.expected, "out32");
    EXPECT_EQ(result.dictionary().size(), rounded.size());
    for (const auto& [name, expected] : rounded) {
        const MLFeatureValue* const actual = result.featureValue(name);
        ASSERT_NE(actual, nullptr) << name;
        const MLMultiArray& array = *actual->multiArrayValue();
        EXPECT_EQ(array.shape(), expected->shape()) << name;
        const auto reference = exact.find(name);
        const std::vector<double> wanted = values(reference == exact.end() ? *expected : *reference->second);
        const std::vector<double> given = values(array);
        ASSERT_EQ(given.size(), wanted.size()) << name;
        EXPECT_LE(largestDifference(given, wanted), tolerance(values(*expected), wanted, array)) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(, SampleBundles, testing::ValuesIn(allSamples()), [](const auto& test) {
    std::string name = test.param.expected.filename().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
});

} // namespace
} // namespace MLProgram
