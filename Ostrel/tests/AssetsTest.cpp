// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "FakeModel.h"
#include "TestConfiguration.h"

#include <Ostrel/Assets.h>
#include <Ostrel/DecodingError.h>
#include <Ostrel/OstrelError.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>

using namespace Ostrel;
using nlohmann::json;
using PlatformSupport::Float16;

namespace {

json metadata(const Configuration& c)
{
    return { { "sample_rate", c.sampleRate }, { "hop_length", c.hopLength }, { "n_samples", c.nSamples },
        { "n_rows", c.nRows }, { "n_mels", c.nMels }, { "n_fft", c.nFFT }, { "preemph", c.preemph },
        { "n_padded_samples", c.nPaddedSamples }, { "valid_frames", c.validFrames }, { "enc_frames", c.encFrames },
        { "joint_hidden", c.jointHidden }, { "pred_hidden", c.predHidden }, { "pred_layers", c.predLayers },
        { "vocab_size", c.vocabSize }, { "blank_idx", c.blankIdx }, { "durations", c.durations },
        { "decode_width", c.decodeWidth } };
}

// A complete model directory, whose stages are loaded from nowhere.
class AssetsTest : public testing::Test {
protected:
    AssetsTest()
    {
        write("meta.json", metadata(configuration).dump());
        write("vocab.json", R"(["a", "b", "c", "d", "e"])");
        write("embedding.f16", std::string(30, 'x')); // 5 rows of 3
        for (const char* stage : { "mel.mlmodelc", "encoder.mlmodelc", "decoder.mlmodelc" })
            std::filesystem::create_directory(directory / stage);
    }

    void write(const std::string& name, const std::string& content) const
    {
        std::ofstream(directory / name, std::ios::binary) << content;
    }

    Assets load()
    {
        return Assets::load(directory, [this](const std::filesystem::path& bundle) {
            loaded.push_back(bundle.filename());
            auto stage = fakeDecodeStep(configuration, 8);
            if (change)
                change(stage->description.inputDescriptionsByName);
            return stage;
        });
    }

    std::string refusal()
    {
        try {
            load();
        } catch (const OstrelError& error) {
            EXPECT_EQ(error.which(), OstrelError::Case::invalidModel);
            return error.description();
        }
        return "none";
    }

    Configuration configuration = testConfiguration();
    std::filesystem::path directory = freshDirectory("model");
    std::function<void(std::map<std::string, MLProgram::MLFeatureDescription>&)> change; // of the stages' inputs
    std::vector<std::string> loaded;
};

} // namespace

TEST_F(AssetsTest, LoadsAllPartsInOrder)
{
    const Assets assets = load();
    EXPECT_EQ(assets.configuration.nRows, 402);
    EXPECT_EQ(assets.vocabulary.size(), 5U); // one more than the vocabulary's size
    EXPECT_EQ(assets.embeddingData.bytes().size(), 30U);
    EXPECT_EQ(assets.decodeLanes, 8);
    EXPECT_EQ(loaded, (std::vector<std::string> { "mel.mlmodelc", "encoder.mlmodelc", "decoder.mlmodelc" }));
}

TEST_F(AssetsTest, LoadsAGeometryWithoutValidFrames)
{
    configuration.validFrames = 0;
    write("meta.json", metadata(configuration).dump());
    EXPECT_EQ(load().configuration.validFrames, 0);
}

TEST_F(AssetsTest, PassesOnWhatTheReadersSay)
{
    write("vocab.json", R"({"a": 1})");
    EXPECT_THROW(load(), DecodingError);
    write("vocab.json", R"(["a", "b", "c", 4])");
    EXPECT_THROW(load(), DecodingError);
    write("meta.json", R"({"sample_rate": 16000})");
    EXPECT_THROW(load(), DecodingError);
    write("meta.json", "{");
    EXPECT_THROW(load(), json::parse_error);
    write("meta.json", "");
    EXPECT_THROW(load(), json::parse_error);
    std::filesystem::remove(directory / "meta.json");
    EXPECT_THROW(load(), std::filesystem::filesystem_error);
}

TEST_F(AssetsTest, ValidatesTheMetadataBeforeItReadsOn)
{
    configuration.durations = {};
    write("meta.json", metadata(configuration).dump());
    std::filesystem::remove(directory / "vocab.json");
    EXPECT_EQ(refusal(), "invalid model: model metadata has an invalid vocabulary");
}

TEST_F(AssetsTest, RefusesAVocabularyThatIsTooSmall)
{
    write("vocab.json", R"(["a", "b", "c", "d"])");
    EXPECT_EQ(refusal(), "none");
    write("vocab.json", R"(["a", "b", "c"])");
    EXPECT_EQ(refusal(), "invalid model: vocabulary is smaller than the model's vocab size");
}

TEST_F(AssetsTest, RefusesAnEmbeddingOfAnotherSize)
{
    write("embedding.f16", std::string(29, 'x'));
    EXPECT_EQ(refusal(), "invalid model: embedding.f16 has 29 bytes, expected 30");
    write("embedding.f16", "");
    EXPECT_EQ(refusal(), "invalid model: embedding.f16 has 0 bytes, expected 30");
    configuration.predHidden = INT64_MAX;
    write("meta.json", metadata(configuration).dump());
    EXPECT_EQ(refusal(), "invalid model: embedding.f16 has 0 bytes, expected 9223372036854775807");
}

TEST_F(AssetsTest, NamesAStageThatIsMissing)
{
    std::filesystem::remove(directory / "encoder.mlmodelc");
    EXPECT_EQ(refusal(), "invalid model: missing encoder.mlmodelc in " + directory.string());
    EXPECT_EQ(loaded, (std::vector<std::string> { "mel.mlmodelc" }));
}

TEST_F(AssetsTest, NeedsLanesOfTheDecoder)
{
    change = [](auto& inputs) { inputs.erase("embed"); };
    EXPECT_EQ(refusal(), "invalid model: decode step is missing its embed input");
    change = [](auto& inputs) { inputs["embed"].multiArrayConstraint.reset(); };
    EXPECT_EQ(refusal(), "invalid model: decode step is missing its embed input");
    change = [](auto& inputs) { inputs["embed"].multiArrayConstraint->shape = { 0, 3, 1, 1 }; };
    EXPECT_EQ(refusal(), "invalid model: decode step declares no lanes");
    change = [](auto& inputs) { inputs["embed"].multiArrayConstraint->shape = {}; };
    EXPECT_EQ(refusal(), "invalid model: decode step declares no lanes");
}
