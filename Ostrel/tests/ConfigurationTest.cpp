// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Geometry.h"
#include "TestConfiguration.h"

#include <Ostrel/DecodingError.h>
#include <Ostrel/OstrelError.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace Ostrel;
using nlohmann::json;

namespace {

json completeMetadata()
{
    return json::parse(R"({
        "sample_rate": 1, "hop_length": 2, "n_samples": 3, "n_rows": 4, "n_mels": 5, "n_fft": 6, "preemph": 0.97,
        "n_padded_samples": 7, "valid_frames": 8, "enc_frames": 9, "joint_hidden": 10, "pred_hidden": 11,
        "pred_layers": 12, "vocab_size": 13, "blank_idx": 14, "durations": [0, -1, 4], "decode_width": 15 })");
}

std::string refusal(const Configuration& configuration)
{
    try {
        configuration.validate();
    } catch (const OstrelError& error) {
        return error.description();
    }
    return "none";
}

constexpr const char* invalidGeometry = "invalid model: model metadata has invalid geometry";
constexpr const char* invalidVocabulary = "invalid model: model metadata has an invalid vocabulary";
constexpr const char* invalidDecoding = "invalid model: model metadata has invalid decode geometry";

} // namespace

TEST(Configuration, ReadsEveryKey)
{
    const auto c = completeMetadata().get<Configuration>();
    const std::vector<int64_t> read { c.sampleRate, c.hopLength, c.nSamples, c.nRows, c.nMels, c.nFFT, c.nPaddedSamples,
        c.validFrames, c.encFrames, c.jointHidden, c.predHidden, c.predLayers, c.vocabSize, c.blankIdx, c.decodeWidth };
    EXPECT_EQ(read, (std::vector<int64_t> { 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15 }));
    EXPECT_EQ(c.preemph, 0.97F);
    EXPECT_EQ(c.durations, (std::vector<int64_t> { 0, -1, 4 }));
}

TEST(Configuration, RequiresEveryKey)
{
    const json complete = completeMetadata();
    for (const auto& [key, value] : complete.items()) {
        json metadata = complete;
        metadata.erase(key);
        EXPECT_THROW(metadata.get<Configuration>(), DecodingError) << key;
    }
}

TEST(Configuration, RefusesWrongTypes)
{
    for (const json& wrong : { json("1"), json(1.5), json(1.0), json(nullptr), json(true), json::array({ 1 }),
             json(std::numeric_limits<uint64_t>::max()) }) {
        json metadata = completeMetadata();
        metadata["n_rows"] = wrong;
        EXPECT_THROW(metadata.get<Configuration>(), DecodingError) << wrong;
    }
    for (const json& wrong : { json(1), json::array({ 1, 2.5 }), json::array({ "1" }), json::object() }) {
        json metadata = completeMetadata();
        metadata["durations"] = wrong;
        EXPECT_THROW(metadata.get<Configuration>(), DecodingError) << wrong;
    }
    json metadata = completeMetadata();
    metadata["preemph"] = "0.97";
    EXPECT_THROW(metadata.get<Configuration>(), DecodingError);
    metadata["preemph"] = 1;
    EXPECT_EQ(metadata.get<Configuration>().preemph, 1);
    EXPECT_THROW(json::array().get<Configuration>(), DecodingError);
}

TEST(Configuration, ValidatesGeometryFirst)
{
    using Field = int64_t Configuration::*;
    for (const Field field : { &Configuration::sampleRate, &Configuration::hopLength, &Configuration::nSamples,
             &Configuration::nRows, &Configuration::nMels, &Configuration::nFFT, &Configuration::encFrames,
             &Configuration::jointHidden, &Configuration::predHidden, &Configuration::predLayers }) {
        Configuration configuration = testConfiguration();
        configuration.durations = {};
        configuration.*field = 0;
        EXPECT_EQ(refusal(configuration), invalidGeometry);
    }
}

TEST(Configuration, ValidatesTheVocabularyNext)
{
    const auto with = [](int64_t vocabSize, int64_t blankIdx, std::vector<int64_t> durations) {
        Configuration configuration = testConfiguration();
        configuration.vocabSize = vocabSize;
        configuration.blankIdx = blankIdx;
        configuration.durations = std::move(durations);
        configuration.decodeWidth = 0;
        return refusal(configuration);
    };
    EXPECT_EQ(with(0, 0, { 1 }), invalidVocabulary);
    EXPECT_EQ(with(4, 5, { 1 }), invalidVocabulary);
    EXPECT_EQ(with(4, -1, { 1 }), invalidVocabulary);
    EXPECT_EQ(with(4, 4, {}), invalidVocabulary);
    EXPECT_EQ(with(4, 4, { 1 }), invalidDecoding);
    EXPECT_EQ(with(4, 0, { -1 }), invalidDecoding);
}

TEST(Configuration, ValidatesDecodingLast)
{
    Configuration configuration = testConfiguration();
    configuration.nPaddedSamples = configuration.nSamples;
    EXPECT_EQ(refusal(configuration), "none");
    configuration.nPaddedSamples = configuration.nSamples - 1;
    EXPECT_EQ(refusal(configuration), invalidDecoding);
}

TEST(Configuration, DoesNotValidateValidFramesAndPreemphasis)
{
    Configuration configuration = testConfiguration();
    configuration.validFrames = 0;
    configuration.preemph = -7;
    EXPECT_EQ(refusal(configuration), "none");
}

TEST(Geometry, DerivesItsNumbers)
{
    const Geometry geometry(testConfiguration());
    EXPECT_EQ(geometry.frameLength, 80);
    EXPECT_EQ(geometry.secondsPerFrame, 0.8);
    EXPECT_EQ(geometry.cellLength, 2);
    EXPECT_EQ(geometry.projectionSize, 100U);
}

TEST(Geometry, CountsValidFramesUpwards)
{
    const Geometry geometry(testConfiguration());
    EXPECT_EQ(geometry.validFrames(0), 1);
    EXPECT_EQ(geometry.validFrames(80), 1);
    EXPECT_EQ(geometry.validFrames(81), 2);
    EXPECT_EQ(geometry.validFrames(1'000'000), 50);
}

TEST(Geometry, RefusesNumbersThatNoArithmeticHolds)
{
    using Field = int64_t Configuration::*;
    for (const Field field :
        { &Configuration::sampleRate, &Configuration::hopLength, &Configuration::nSamples, &Configuration::nRows,
            &Configuration::encFrames, &Configuration::predLayers, &Configuration::vocabSize }) {
        Configuration configuration = testConfiguration();
        configuration.*field = std::numeric_limits<int64_t>::max();
        EXPECT_THROW(Geometry { configuration }, OstrelError);
    }
    Configuration configuration = testConfiguration();
    configuration.hopLength = configuration.nRows = int64_t { 1 } << 32;
    EXPECT_THROW(Geometry { configuration }, OstrelError);
}
