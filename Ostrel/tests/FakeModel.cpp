// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "FakeModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>

namespace Ostrel {

using PlatformSupport::Float16;
using PlatformSupport::toFloat;
using PlatformSupport::toFloat16;

std::unique_ptr<FakeStage> fakeMel(const Configuration& c)
{
    return std::make_unique<FakeStage>(FakeStage::Features { { "audio_rows", { 1, c.hopLength, 1, c.nRows } },
                                           { "mel_mask", { 1, 1, 1, c.validFrames } } },
        FakeStage::Features { { "mel", { 1, c.nMels, 1, c.validFrames } } });
}

std::unique_ptr<FakeStage> fakeEncoder(const Configuration& c)
{
    return std::make_unique<FakeStage>(
        FakeStage::Features { { "mel", { 1, c.nMels, 1, c.validFrames } }, { "key_bias", { 1, c.encFrames, 1, 1 } },
            { "pad_mask", { 1, 1, 1, c.encFrames } } },
        FakeStage::Features { { "enc_proj", { 1, c.jointHidden, 1, c.encFrames } } });
}

std::unique_ptr<FakeStage> fakeDecodeStep(const Configuration& c, int64_t lanes)
{
    const std::vector<int64_t> state { lanes, c.predLayers * c.predHidden, 1, 1 };
    const int64_t channels = c.vocabSize + 1 + static_cast<int64_t>(c.durations.size());
    return std::make_unique<FakeStage>(
        FakeStage::Features { { "embed", { lanes, c.predHidden, 1, 1 } }, { "h_in", state }, { "c_in", state },
            { "enc_step", { lanes, c.jointHidden, 1, c.decodeWidth } } },
        FakeStage::Features {
            { "logits", { lanes, channels, 1, c.decodeWidth } }, { "h_out", state }, { "c_out", state } });
}

std::vector<Float16> fakeEmbedding(const Configuration& c)
{
    std::vector<Float16> table;
    for (int64_t token = 0; token <= c.vocabSize; ++token)
        table.insert(table.end(), static_cast<size_t>(c.predHidden),
            toFloat16(token == c.blankIdx ? 0.0F : static_cast<float>(token)));
    return table;
}

Assets fakeAssets(const Configuration& c, int64_t lanes)
{
    const auto path = freshDirectory("fake-assets") / "embedding.f16";
    const std::vector<Float16> table = fakeEmbedding(c);
    std::ofstream(path, std::ios::binary)
        .write(
            reinterpret_cast<const char*>(table.data()), static_cast<std::streamsize>(table.size() * sizeof(Float16)));

    std::vector<std::string> vocabulary;
    for (int64_t token = 0; token < c.vocabSize; ++token)
        vocabulary.push_back("\u2581w" + std::to_string(token));
    return { .configuration = c,
        .vocabulary = std::move(vocabulary),
        .embeddingData = PlatformSupport::MappedFile(path),
        .mel = fakeMel(c),
        .encoder = fakeEncoder(c),
        .decodeStep = fakeDecodeStep(c, lanes),
        .decodeLanes = lanes };
}

void makeHearing(const Assets& assets)
{
    const Configuration& c = assets.configuration;
    const auto rowCount = static_cast<size_t>(c.nRows);
    const auto encFrames = static_cast<size_t>(c.encFrames);
    const auto validFrames = static_cast<size_t>(c.validFrames);

    // A mel frame is the first sample of its hop, an encoder frame the first of its 8 mel frames.
    dynamic_cast<FakeStage&>(*assets.mel).onPredict = [=](FakeStage& stage) {
        for (size_t i = 0; i < std::min(validFrames, rowCount); ++i)
            stage.output("mel")[i] = stage.input("audio_rows")[i];
    };
    dynamic_cast<FakeStage&>(*assets.encoder).onPredict = [=](FakeStage& stage) {
        for (size_t frame = 0; frame < encFrames && 8 * frame < validFrames; ++frame)
            stage.output("enc_proj")[frame] = stage.input("mel")[8 * frame];
    };
    dynamic_cast<FakeStage&>(*assets.decodeStep).onPredict = [c](FakeStage& stage) {
        const auto width = static_cast<size_t>(c.decodeWidth);
        const auto channels = static_cast<size_t>(c.vocabSize + 1) + c.durations.size();
        const auto logits = stage.output("logits");
        std::ranges::fill(logits, Float16 {});
        const size_t lanes = logits.size() / (channels * width);
        const size_t stepSize = stage.input("enc_step").size() / lanes;
        const size_t embedSize = stage.input("embed").size() / lanes;
        for (size_t lane = 0; lane < lanes; ++lane)
            for (size_t column = 0; column < width; ++column) {
                const auto heard = std::lround(toFloat(stage.input("enc_step")[lane * stepSize + column]));
                const auto last = std::lround(toFloat(stage.input("embed")[lane * embedSize]));
                const auto token = heard == 0 || heard == last ? c.blankIdx : heard;
                logits[(lane * channels + static_cast<size_t>(token)) * width + column] = toFloat16(1);
                const size_t oneFrame = static_cast<size_t>(c.vocabSize) + 1 + 1; // the class of duration 1
                logits[(lane * channels + oneFrame) * width + column] = toFloat16(1);
            }
    };
}

std::filesystem::path freshDirectory(const std::string& name)
{
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    const auto path = std::filesystem::path(testing::TempDir())
        / (std::string("ostrel-") + test->test_suite_name() + "." + test->name()) / name;
    std::filesystem::remove_all(path);
    std::filesystem::create_directories(path);
    return path;
}

} // namespace Ostrel
