// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Encoder.h"

#include "FakeModel.h"
#include "TestConfiguration.h"

#include <MLProgram/MLModelError.h>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Ostrel;
using MLProgram::MLModelError;
using PlatformSupport::Float16;
using PlatformSupport::toFloat;
using PlatformSupport::toFloat16;

namespace {

class EncoderTest : public testing::Test {
protected:
    std::vector<float> encode(size_t sampleCount, int64_t validFrames)
    {
        std::vector<Float16> projections(100);
        encoder.encode(std::vector<float>(sampleCount, 0.5F), validFrames, projections);
        std::vector<float> values(projections.size());
        toFloat(projections, values);
        return values;
    }

    // How many of a tensor's first values are `first`, provided that the others are `rest`; else -1.
    static int64_t leading(const std::vector<float>& values, float first, float rest)
    {
        const auto border = std::ranges::find(values, rest);
        const bool clean = std::all_of(values.begin(), border, [&](float value) { return value == first; })
            && std::all_of(border, values.end(), [&](float value) { return value == rest; });
        return clean ? border - values.begin() : -1;
    }
    int64_t melFrames() const { return leading(mel->inputValues("mel_mask"), 1, 0); }
    int64_t unbiasedKeys() const { return leading(stage->inputValues("key_bias"), 0, bias); }

    const float bias = toFloat(toFloat16(-40000.0F));
    Configuration configuration = testConfiguration();
    std::unique_ptr<FakeStage> mel = fakeMel(configuration);
    std::unique_ptr<FakeStage> stage = fakeEncoder(configuration);
    Encoder encoder { configuration, *mel, *stage };
};

std::string refusal(const Configuration& configuration, FakeStage& mel, FakeStage& stage)
{
    try {
        const Encoder encoder(configuration, mel, stage);
    } catch (const MLModelError& error) {
        EXPECT_EQ(error.which(), MLModelError::Case::invalidFeature);
        return error.description();
    }
    return "none";
}

} // namespace

TEST_F(EncoderTest, RunsMelThenEncoderOverTheSameTensor)
{
    mel->onPredict = [&](FakeStage& self) {
        EXPECT_EQ(stage->calls, 0);
        std::ranges::fill(self.output("mel"), toFloat16(3));
    };
    stage->onPredict = [](FakeStage& self) {
        EXPECT_EQ(toFloat(self.input("mel").front()), 3);
        for (size_t i = 0; i < 100; ++i)
            self.output("enc_proj")[i] = toFloat16(static_cast<float>(i));
    };
    const std::vector<float> projections = encode(4000, 50);
    EXPECT_EQ(projections[0], 0);
    EXPECT_EQ(projections[99], 99);
    EXPECT_EQ(mel->calls, 1);
}

TEST_F(EncoderTest, MasksMelFramesPastTheSamples)
{
    encode(4000, 50);
    EXPECT_EQ(melFrames(), 400); // 401 would fit; a full window has 400
    encode(3990, 50);
    EXPECT_EQ(melFrames(), 400);
    encode(39, 1);
    EXPECT_EQ(melFrames(), 4);
}

TEST_F(EncoderTest, TakesAWindowOfNoSamples)
{
    encode(0, 7);
    EXPECT_EQ(melFrames(), 1);
    EXPECT_EQ(unbiasedKeys(), 7);
    EXPECT_TRUE(std::ranges::all_of(mel->inputValues("audio_rows"), [](float value) { return value == 0; }));
}

TEST_F(EncoderTest, RewritesTheKeyBiasOfAShortWindow)
{
    encode(800, 10);
    EXPECT_EQ(unbiasedKeys(), 10);
    encode(4000, 50);
    EXPECT_EQ(unbiasedKeys(), 50);
}

TEST_F(EncoderTest, HoldsValidFramesWithinTheEncoders)
{
    encode(100, 0);
    EXPECT_EQ(unbiasedKeys(), 1);
    encode(100, 1000);
    EXPECT_EQ(unbiasedKeys(), 50);
}

TEST_F(EncoderTest, KeepsThePaddingMaskOfOnes)
{
    for (int i = 0; i < 3; ++i) {
        encode(4000, 50);
        EXPECT_EQ(stage->inputValues("pad_mask"), std::vector<float>(50, 1.0F));
    }
}

TEST_F(EncoderTest, PassesOnAStagesFailure)
{
    stage->onPredict = [](FakeStage&) { throw MLModelError(MLModelError::Case::outOfMemory, "full"); };
    EXPECT_THROW(encode(1, 1), MLModelError);
    stage->onPredict = {};
    EXPECT_NO_THROW(encode(1, 1));
}

TEST_F(EncoderTest, RefusesStagesOfOtherShapes)
{
    configuration.nRows = 403;
    EXPECT_EQ(refusal(configuration, *mel, *stage),
        "feature \"audio_rows\" has the shape [1, 10, 1, 402], but the model's metadata asks for [1, 10, 1, 403]");
    configuration = testConfiguration();
    configuration.jointHidden = 3;
    EXPECT_NE(refusal(configuration, *mel, *stage).find("enc_proj"), std::string::npos);
    configuration = testConfiguration();
    stage->description.inputDescriptionsByName.erase("pad_mask");
    EXPECT_EQ(refusal(configuration, *mel, *stage), "the stage has no multi-array feature \"pad_mask\"");
}

TEST_F(EncoderTest, AcceptsFlexibleShapesAndUntoldOutputs)
{
    auto& rows = *mel->description.inputDescriptionsByName["audio_rows"].multiArrayConstraint;
    rows.shape = { 1, 10, 1, 1 };
    rows.shapeRange = { { 1, 1 }, { 10, 10 }, { 1, 1 }, { 1, -1 } };
    auto& keys = *stage->description.inputDescriptionsByName["key_bias"].multiArrayConstraint;
    keys.enumeratedShapes = { { 1, 25, 1, 1 }, { 1, 50, 1, 1 } };
    keys.shape = { 1, 25, 1, 1 };
    stage->description.outputDescriptionsByName["enc_proj"].multiArrayConstraint->shape = {};
    EXPECT_EQ(refusal(configuration, *mel, *stage), "none");
    rows.shapeRange.back() = { 1, 401 };
    EXPECT_NE(refusal(configuration, *mel, *stage), "none");
    rows.shapeRange.pop_back();
    EXPECT_NE(refusal(configuration, *mel, *stage), "none");
}

TEST(EncoderDeathTest, StopsWithoutMelFrames)
{
    Configuration configuration = testConfiguration();
    configuration.validFrames = 0;
    const auto mel = fakeMel(configuration);
    const auto stage = fakeEncoder(configuration);
    Encoder encoder(configuration, *mel, *stage);
    std::vector<Float16> projections(100);
    EXPECT_DEATH(encoder.encode({}, 1, projections), "no mel frames");
}
