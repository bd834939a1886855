// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Decoder.h"

#include "FakeModel.h"
#include "TestConfiguration.h"

#include <MLProgram/MLModelError.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>

using namespace Ostrel;
using PlatformSupport::Float16;
using PlatformSupport::toFloat;
using PlatformSupport::toFloat16;

namespace {

// What the decoder stage is to score highest, told by the encoder frame it looks at, the last token, and how many
// tokens the window has given so far.
struct Choice {
    int64_t token;
    size_t durationClass;
};
using Script = std::function<Choice(int64_t window, int64_t frame, int64_t lastToken, int64_t tokensSoFar)>;

constexpr int64_t framesPerWindow = 50;
constexpr int64_t blank = 4;

// Runs the decoder over a stage that follows a script. Frame f of window w holds 1 + 50 w + f in channel 0 and its
// negative in channel 1; the state counts tokens.
class ScriptedDecoder {
public:
    ScriptedDecoder(Configuration c, int64_t laneCount, Script choose)
        : configuration(std::move(c))
        , lanes(laneCount)
        , script(std::move(choose))
        , stage(fakeDecodeStep(configuration, lanes))
        , embedding(fakeEmbedding(configuration))
    {
        for (Float16& value : std::span(embedding).last(static_cast<size_t>(configuration.predHidden)))
            value = toFloat16(static_cast<float>(blank));
        stage->onPredict = [this](FakeStage&) { score(); };
    }

    std::vector<WindowTokens> decode(const std::vector<int64_t>& valids)
    {
        std::vector<Float16> projections;
        for (size_t w = 0; w < valids.size(); ++w)
            for (const float sign : { 1.0F, -1.0F })
                for (int64_t f = 0; f < framesPerWindow; ++f)
                    projections.push_back(toFloat16(sign * static_cast<float>(id(static_cast<int64_t>(w), f))));
        return Decoder(configuration, lanes, embedding, *stage).decode(projections, valids);
    }

    static int64_t id(int64_t window, int64_t frame) { return 1 + framesPerWindow * window + frame; }

    Configuration configuration;
    int64_t lanes;
    Script script;
    std::unique_ptr<FakeStage> stage;
    std::vector<Float16> embedding;

private:
    void score()
    {
        for (int64_t lane = 0; lane < lanes; ++lane) {
            const auto state = static_cast<size_t>(configuration.predLayers * configuration.predHidden);
            for (const auto& [from, to] : { std::pair("h_in", "h_out"), std::pair("c_in", "c_out") })
                for (size_t i = static_cast<size_t>(lane) * state; i < static_cast<size_t>(lane + 1) * state; ++i)
                    stage->output(to)[i] = toFloat16(toFloat(stage->input(from)[i]) + 1);
            for (int64_t column = 0; column < configuration.decodeWidth; ++column)
                scoreColumn(lane, column);
        }
    }

    void scoreColumn(int64_t lane, int64_t column)
    {
        const auto at = [&](const char* name, int64_t index) {
            return static_cast<int64_t>(toFloat(stage->input(name)[static_cast<size_t>(index)]));
        };
        const int64_t width = configuration.decodeWidth;
        const int64_t frameId = at("enc_step", (lane * configuration.jointHidden) * width + column);
        EXPECT_EQ(at("enc_step", (lane * configuration.jointHidden + 1) * width + column), -frameId);
        const int64_t lastToken = at("embed", lane * configuration.predHidden);
        const int64_t tokens = at("h_in", lane * configuration.predLayers * configuration.predHidden);
        EXPECT_EQ(at("c_in", (lane + 1) * configuration.predLayers * configuration.predHidden - 1), tokens);

        // A column of zeros is padding: whatever it scores must be ignored.
        const Choice choice = frameId == 0
            ? Choice { 3, configuration.durations.size() - 1 }
            : script((frameId - 1) / framesPerWindow, (frameId - 1) % framesPerWindow, lastToken, tokens);
        const int64_t channels = configuration.vocabSize + 1 + static_cast<int64_t>(configuration.durations.size());
        const auto put = [&](int64_t channel, float value) {
            stage->output("logits")[static_cast<size_t>((lane * channels + channel) * width + column)]
                = toFloat16(value);
        };
        for (int64_t channel = 0; channel < channels; ++channel)
            put(channel, -1);
        put(choice.token, 2);
        put(configuration.vocabSize + 1 + static_cast<int64_t>(choice.durationClass), -0.5F);
    }
};

Script always(Choice choice)
{
    return [choice](int64_t, int64_t, int64_t, int64_t) { return choice; };
}

// One window at a time, one frame at a time: the meaning of decode().
WindowTokens plainDecode(const Configuration& c, const Script& script, int64_t window, int64_t limit)
{
    WindowTokens result;
    int64_t frame = 0;
    int64_t last = c.blankIdx;
    int64_t count = 0;
    while (frame < limit) {
        const int64_t columns = std::min(limit - frame, c.decodeWidth);
        for (int64_t j = 0;;) {
            const Choice choice = script(window, frame + j, last, static_cast<int64_t>(result.tokens.size()));
            const int64_t d = c.durations[choice.durationClass];
            if (choice.token == c.blankIdx) {
                count = 0;
                j += std::max<int64_t>(d, 1);
                if (j < columns)
                    continue;
                frame += j;
                break;
            }
            result.tokens.push_back(choice.token);
            result.frames.push_back(frame + j);
            result.ends.push_back(frame + j + d);
            last = choice.token;
            ++count;
            int64_t advance = d;
            if (d == 0 && count >= 10) {
                count = 0;
                advance = 1;
            }
            frame += j + advance;
            break;
        }
    }
    return result;
}

using Integers = std::vector<int64_t>;

} // namespace

TEST(Decoder, DecodesNothingWithoutWindows)
{
    ScriptedDecoder decoder(testConfiguration(), 2, always({ 0, 1 }));
    EXPECT_TRUE(decoder.decode({}).empty());
    EXPECT_EQ(decoder.stage->calls, 0);
}

TEST(Decoder, EmitsATokenAndAdvancesByItsDuration)
{
    ScriptedDecoder decoder(testConfiguration(), 1, always({ 2, 2 }));
    const WindowTokens window = decoder.decode({ 5 }).front();
    EXPECT_EQ(window.tokens, (Integers { 2, 2, 2 }));
    EXPECT_EQ(window.frames, (Integers { 0, 2, 4 }));
    EXPECT_EQ(window.ends, (Integers { 2, 4, 6 })); // the last past the window
    EXPECT_EQ(decoder.stage->calls, 3); // the other columns of a step are dropped
}

TEST(Decoder, GoesOnAfterABlankWithinTheSameScores)
{
    ScriptedDecoder decoder(testConfiguration(), 1, [](int64_t, int64_t frame, int64_t, int64_t) {
        return frame == 3 ? Choice { 1, 1 } : Choice { blank, 1 };
    });
    const WindowTokens window = decoder.decode({ 9 }).front();
    EXPECT_EQ(window.frames, (Integers { 3 }));
    EXPECT_EQ(window.ends, (Integers { 4 }));
    EXPECT_EQ(decoder.stage->calls, 3); // frames 0-3, 4-7, 8
}

TEST(Decoder, AdvancesAtLeastOneFrameAfterABlank)
{
    for (const int64_t duration : { 0, -3 }) {
        Configuration configuration = testConfiguration();
        configuration.durations = { duration };
        ScriptedDecoder decoder(configuration, 1, [](int64_t, int64_t frame, int64_t, int64_t) {
            return Choice { frame == 7 ? 2 : blank, 0 };
        });
        EXPECT_EQ(decoder.decode({ 8 }).front().frames.front(), 7);
    }
}

TEST(Decoder, JumpsOverFramesAfterABlank)
{
    ScriptedDecoder decoder(testConfiguration(), 1, [](int64_t, int64_t frame, int64_t, int64_t) {
        return frame == 1 || frame == 6 ? Choice { 0, 1 } : Choice { blank, 3 };
    });
    EXPECT_EQ(decoder.decode({ 50 }).front().frames, (Integers { 6 }));
}

TEST(Decoder, IgnoresTheColumnsPastAWindow)
{
    ScriptedDecoder decoder(testConfiguration(), 1, always({ blank, 0 }));
    EXPECT_TRUE(decoder.decode({ 1 }).front().tokens.empty());
    EXPECT_TRUE(decoder.decode({ 6 }).front().tokens.empty());
}

TEST(Decoder, HoldsTheLimitWithinTheEncodersFrames)
{
    ScriptedDecoder decoder(testConfiguration(), 1, always({ 0, 1 }));
    EXPECT_EQ(decoder.decode({ 0 }).front().tokens.size(), 1U);
    EXPECT_EQ(decoder.decode({ 1000 }).front().tokens.size(), 50U);
}

TEST(Decoder, LetsTenTokensComeFromOneFrame)
{
    ScriptedDecoder decoder(testConfiguration(), 1, always({ 1, 0 }));
    const WindowTokens window = decoder.decode({ 2 }).front();
    Integers frames(10, 0);
    frames.insert(frames.end(), 10, 1);
    EXPECT_EQ(window.frames, frames);
    EXPECT_EQ(window.ends, frames);
}

TEST(Decoder, CountsTokensSinceTheLastBlank)
{
    // Nine tokens of duration 1, then tokens of duration 0: the first of these is the tenth, and is forced on.
    ScriptedDecoder decoder(testConfiguration(), 1, [](int64_t, int64_t frame, int64_t, int64_t) {
        return Choice { 1, frame < 9 ? size_t { 1 } : size_t { 0 } };
    });
    const WindowTokens window = decoder.decode({ 11 }).front();
    EXPECT_EQ(std::ranges::count(window.frames, 9), 1);
    EXPECT_EQ(std::ranges::count(window.frames, 10), 10);
}

TEST(Decoder, GivesTiesToTheLowerIndex)
{
    ScriptedDecoder decoder(testConfiguration(), 1, always({ 0, 0 }));
    decoder.stage->onPredict = [](FakeStage& stage) { std::ranges::fill(stage.output("logits"), Float16 {}); };
    EXPECT_EQ(decoder.decode({ 1 }).front().tokens, Integers(10, 0)); // token 0, duration class 0

    decoder.configuration.blankIdx = 0;
    EXPECT_TRUE(decoder.decode({ 3 }).front().tokens.empty());
}

TEST(Decoder, StartsEachWindowFresh)
{
    // Token 0 for a fresh state and the blank's embedding, then always 1; anything else would be 3.
    ScriptedDecoder decoder(testConfiguration(), 2, [](int64_t, int64_t, int64_t last, int64_t tokensSoFar) {
        if (tokensSoFar == 0)
            return Choice { last == blank ? 0 : 3, 1 };
        return Choice { last == (tokensSoFar == 1 ? 0 : 1) ? 1 : 3, 1 };
    });
    for (const Integers& valids : { Integers { 3, 1, 5, 2, 4 }, Integers { 2, 2 } }) {
        const std::vector<WindowTokens> windows = decoder.decode(valids);
        for (size_t w = 0; w < windows.size(); ++w) {
            Integers expected(static_cast<size_t>(valids[w]), 1);
            expected.front() = 0;
            EXPECT_EQ(windows[w].tokens, expected);
        }
    }
}

TEST(Decoder, GivesResultsInWindowOrderWhateverFinishesFirst)
{
    const Script script = [](int64_t window, int64_t, int64_t, int64_t) { return Choice { window % 4, 1 }; };
    for (const int64_t lanes : { 1, 3, 8, 20 }) {
        ScriptedDecoder decoder(testConfiguration(), lanes, script);
        const Integers valids { 50, 1, 2, 30, 1, 1, 9 };
        const std::vector<WindowTokens> windows = decoder.decode(valids);
        ASSERT_EQ(windows.size(), valids.size());
        for (size_t w = 0; w < windows.size(); ++w)
            EXPECT_EQ(windows[w].tokens, Integers(static_cast<size_t>(valids[w]), static_cast<int64_t>(w % 4)));
    }
}

TEST(Decoder, AgreesWithThePlainDecoderOnRandomScores)
{
    for (uint32_t seed = 1; seed <= 200; ++seed) {
        Configuration configuration = testConfiguration();
        configuration.decodeWidth = 1 + seed % 5;
        configuration.durations.resize(1 + seed % 5);
        const size_t classes = configuration.durations.size();
        const Script script = [=](int64_t window, int64_t frame, int64_t last, int64_t tokensSoFar) {
            auto hash = static_cast<uint32_t>(window * 7919 + frame * 104729 + last * 1299709 + tokensSoFar * 15485863);
            hash = (hash ^ (hash >> 15) ^ seed) * 2654435761U;
            hash ^= hash >> 13;
            return Choice { hash % 5, (hash >> 8) % classes };
        };
        ScriptedDecoder decoder(configuration, 1 + seed % 7, script);
        Integers valids;
        for (uint32_t w = 0; w < seed % 10; ++w)
            valids.push_back((seed * 31 + w * 17) % 55);
        const std::vector<WindowTokens> windows = decoder.decode(valids);
        for (size_t w = 0; w < windows.size(); ++w)
            EXPECT_EQ(windows[w],
                plainDecode(configuration, script, static_cast<int64_t>(w), std::clamp<int64_t>(valids[w], 1, 50)))
                << "seed " << seed << ", window " << w;
    }
}

TEST(Decoder, EndsAWindowThatDurationsHoldBack)
{
    Configuration configuration = testConfiguration();
    for (const int64_t duration : { int64_t { -1 }, int64_t { -100 }, std::numeric_limits<int64_t>::min() }) {
        configuration.durations = { duration };
        ScriptedDecoder decoder(configuration, 2, always({ 1, 0 }));
        const std::vector<WindowTokens> windows = decoder.decode({ 5, 50, 1 });
        EXPECT_EQ(windows[1].tokens.size(), 500U); // ten stage calls for each frame
        EXPECT_EQ(windows[1].frames, Integers(500, 0)); // never below the first frame
        EXPECT_EQ(windows[1].ends, Integers(500, duration));
        EXPECT_EQ(windows[0].tokens.size(), 50U);
    }
}

TEST(Decoder, FollowsANegativeDurationBackWhileTheWindowLasts)
{
    Configuration configuration = testConfiguration();
    configuration.durations = { -2, 1 };
    ScriptedDecoder decoder(configuration, 1, [](int64_t, int64_t frame, int64_t, int64_t tokensSoFar) {
        return frame == 5 && tokensSoFar == 5 ? Choice { 2, 0 } : Choice { 1, 1 };
    });
    EXPECT_EQ(decoder.decode({ 7 }).front().frames, (Integers { 0, 1, 2, 3, 4, 5, 3, 4, 5, 6 }));
}

TEST(Decoder, SurvivesDurationsThatNoWindowHolds)
{
    Configuration configuration = testConfiguration();
    configuration.durations = { std::numeric_limits<int64_t>::max() };
    const Script script = [](int64_t, int64_t frame, int64_t, int64_t) { return Choice { frame == 1 ? 2 : blank, 0 }; };
    EXPECT_TRUE(ScriptedDecoder(configuration, 1, script).decode({ 50 }).front().tokens.empty());
    const WindowTokens window = ScriptedDecoder(configuration, 1, always({ 2, 0 })).decode({ 50 }).front();
    EXPECT_EQ(window.ends, Integers { std::numeric_limits<int64_t>::max() });
}

TEST(Decoder, PassesOnTheStagesFailureAndCanBeUsedAgain)
{
    ScriptedDecoder decoder(testConfiguration(), 1, always({ 1, 1 }));
    const auto score = std::exchange(decoder.stage->onPredict, [](FakeStage&) { throw std::runtime_error("broken"); });
    EXPECT_THROW(decoder.decode({ 5 }), std::runtime_error);
    decoder.stage->onPredict = score;
    EXPECT_EQ(decoder.decode({ 5 }).front().tokens.size(), 5U);
}

TEST(Decoder, RefusesAStageOfOtherShapes)
{
    using MLProgram::MLModelError;
    Configuration configuration = testConfiguration();
    const auto stage = fakeDecodeStep(configuration, 2);
    const std::vector<Float16> embedding = fakeEmbedding(configuration);
    EXPECT_THROW(Decoder(configuration, 3, embedding, *stage), MLModelError);
    configuration.vocabSize = 5;
    EXPECT_THROW(Decoder(configuration, 2, embedding, *stage), MLModelError);
    configuration = testConfiguration();
    configuration.durations.push_back(5);
    EXPECT_THROW(Decoder(configuration, 2, embedding, *stage), MLModelError);
}
