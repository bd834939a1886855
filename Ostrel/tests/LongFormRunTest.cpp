// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "LongFormRun.h"

#include "TestConfiguration.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using PlatformSupport::Float16;

namespace {

const Geometry geometry(testConfiguration()); // windows of 4000 samples, 40 s; frames of 80 samples, 0.8 s
const std::vector<std::string> vocabulary { "\u2581a", "\u2581b", "\u2581c" };

struct Encoded {
    size_t sampleCount;
    float firstSample;
    int64_t validFrames;
};

// Notes what it is given, and answers each window by a script.
class FakeRecognizer final : public Recognizer {
public:
    void encode(std::span<const float> window, int64_t validFrames, std::span<Float16> into) override
    {
        EXPECT_EQ(into.size(), geometry.projectionSize);
        into.front().bits = static_cast<uint16_t>(encoded.size());
        encoded.push_back({ window.size(), window.empty() ? 0 : window.front(), validFrames });
    }

    std::vector<WindowTokens> decode(std::span<const Float16> projections, std::span<const int64_t> valids) override
    {
        EXPECT_EQ(projections.size(), valids.size() * geometry.projectionSize);
        batches.push_back(valids.size());
        std::vector<WindowTokens> results;
        for (size_t i = 0; i < valids.size(); ++i) {
            const size_t call = projections[i * geometry.projectionSize].bits;
            EXPECT_EQ(encoded[call].validFrames, valids[i]);
            results.push_back(answer(call));
        }
        return results;
    }

    std::function<WindowTokens(size_t call)> answer = [](size_t) { return WindowTokens {}; };
    std::vector<Encoded> encoded;
    std::vector<size_t> batches;
};

// A token at each of a window's 50 frames, except after frame `last`: no gap to suspect up to there.
WindowTokens dense(int64_t last = 49)
{
    WindowTokens window;
    for (int64_t frame = 0; frame <= last; ++frame) {
        window.tokens.push_back(frame % 3);
        window.frames.push_back(frame);
        window.ends.push_back(frame + 1);
    }
    return window;
}

class LongFormRunTest : public testing::Test {
protected:
    Transcript run(std::vector<float> samples, Tunables tunables = { .boundarySearch = 0, .batchWindows = 64 })
    {
        ArrayAudioStream stream(std::move(samples));
        return run(stream, tunables);
    }
    Transcript run(AudioStream& stream, Tunables tunables = { .boundarySearch = 0, .batchWindows = 64 })
    {
        const std::function<void(double)> report = [this](double fraction) { progress.push_back(fraction); };
        return LongFormRun(recognizer, geometry, vocabulary, tunables, stream, report).run();
    }

    // Answers window w of `windows` by `first`, and every further call, the retries, by `again`.
    void answer(size_t windows, const WindowTokens& first, const WindowTokens& again)
    {
        recognizer.answer = [=](size_t call) { return call < windows ? first : again; };
    }

    FakeRecognizer recognizer;
    std::vector<double> progress;
};

std::vector<float> sound(size_t windows)
{
    return std::vector<float>(4000 * windows, 0.1F);
}

} // namespace

TEST_F(LongFormRunTest, EncodesAnEmptyWindowForAStreamThatEndsAtOnce)
{
    const Transcript transcript = run({});
    EXPECT_EQ(transcript.text, "");
    EXPECT_TRUE(transcript.words.empty());
    ASSERT_EQ(recognizer.encoded.size(), 1U);
    EXPECT_EQ(recognizer.encoded[0].sampleCount, 0U);
    EXPECT_EQ(recognizer.encoded[0].validFrames, 1);
    EXPECT_EQ(progress, (std::vector<double> { 0 }));
}

TEST_F(LongFormRunTest, CutsOnlyWhatGoesOnPastAWindow)
{
    run(std::vector<float>(4000));
    EXPECT_EQ(recognizer.encoded.size(), 1U);
    recognizer.encoded.clear();
    run(std::vector<float>(4001));
    ASSERT_EQ(recognizer.encoded.size(), 2U);
    EXPECT_EQ(recognizer.encoded[0].sampleCount, 4000U);
    EXPECT_EQ(recognizer.encoded[1].sampleCount, 1U);
}

TEST_F(LongFormRunTest, CountsValidFramesUpwards)
{
    run(std::vector<float>(4081));
    EXPECT_EQ(recognizer.encoded[0].validFrames, 50);
    EXPECT_EQ(recognizer.encoded[1].validFrames, 2);
}

TEST_F(LongFormRunTest, DecodesInBatches)
{
    recognizer.answer = [](size_t) { return dense(); };
    run(sound(5), { .boundarySearch = 0, .batchWindows = 2 });
    EXPECT_EQ(recognizer.batches, (std::vector<size_t> { 2, 2, 1 }));
}

TEST_F(LongFormRunTest, ReportsWhatIsEncoded)
{
    run(std::vector<float>(10000), { .boundarySearch = 0, .batchWindows = 2 });
    EXPECT_EQ(progress, (std::vector<double> { 0.4, 0.8, 1 }));
}

TEST_F(LongFormRunTest, ReportsNothingButZeroOfAStreamWithoutALength)
{
    class Endless final : public AudioStream {
    public:
        std::optional<int64_t> totalSamples() const override { return {}; }
        int64_t read(int64_t maxFrames, std::vector<float>& samples) override
        {
            return samples_.read(maxFrames, samples);
        }

    private:
        ArrayAudioStream samples_ { std::vector<float>(9000) };
    } stream;
    run(stream);
    EXPECT_EQ(progress, (std::vector<double> { 0, 0, 0 }));
}

TEST_F(LongFormRunTest, AsksTheStreamForFourSecondsAtTheLeast)
{
    class Noting final : public AudioStream {
    public:
        std::optional<int64_t> totalSamples() const override { return {}; }
        int64_t read(int64_t maxFrames, std::vector<float>& samples) override
        {
            asked.push_back(maxFrames);
            const int64_t count = asked.size() < 3 ? 3900 : 0;
            samples.resize(samples.size() + static_cast<size_t>(count));
            return count;
        }
        std::vector<int64_t> asked;
    } stream;
    run(stream, { .boundarySearch = 0, .batchWindows = 1 });
    EXPECT_EQ(stream.asked.front(), 4000);
    EXPECT_EQ(stream.asked[1], 400);
}

TEST_F(LongFormRunTest, LetsPureSilenceBe)
{
    run(std::vector<float>(4000));
    EXPECT_EQ(recognizer.encoded.size(), 1U);
}

TEST_F(LongFormRunTest, TriesAWindowWithoutTokensOnceMoreAndTakesTheResult)
{
    answer(1, {}, dense(2));
    const Transcript transcript = run(sound(1));
    ASSERT_EQ(recognizer.encoded.size(), 2U);
    EXPECT_EQ(recognizer.encoded[1].sampleCount, 3720U);
    EXPECT_EQ(transcript.text, "a b c");
    EXPECT_EQ(progress.size(), 1U); // a retry reports nothing
}

TEST_F(LongFormRunTest, SplicesARescueInAtItsOwnBoundary)
{
    // Tokens up to frame 9 only. The retry starts in the first of equally quiet cells, at sample 621.
    answer(1, dense(9), dense(2));
    const Transcript transcript = run(sound(1));
    ASSERT_EQ(recognizer.encoded.size(), 2U);
    EXPECT_EQ(recognizer.encoded[1].sampleCount, 3379U);
    EXPECT_EQ(recognizer.encoded[1].validFrames, 43);
    EXPECT_EQ(transcript.words.back().start, 6.21 + 2 * 0.8);
    EXPECT_EQ(transcript.words[7], (Word { "b", 7 * 0.8, 6.21 }));
}

TEST_F(LongFormRunTest, KeepsAWindowsTextWhenItsRetryFindsNothing)
{
    answer(1, dense(9), {});
    EXPECT_EQ(run(sound(1)).text, "a b c a b c a b c a");
}

TEST_F(LongFormRunTest, StopsCheckingAfterEightFailedRetriesInARow)
{
    run(sound(20), { .boundarySearch = 0, .batchWindows = 1 });
    EXPECT_EQ(recognizer.encoded.size(), 20U + 8);
}

TEST_F(LongFormRunTest, DecidesOnceForEachBatch)
{
    run(sound(20), { .boundarySearch = 0, .batchWindows = 6 });
    EXPECT_EQ(recognizer.encoded.size(), 20U + 12);
}

TEST_F(LongFormRunTest, StartsCountingAgainAfterAGoodRetry)
{
    // With batches of one window, calls alternate: window, retry. The eighth retry is good.
    recognizer.answer = [](size_t call) { return call == 15 ? dense() : WindowTokens {}; };
    run(sound(15), { .boundarySearch = 0, .batchWindows = 1 });
    EXPECT_EQ(recognizer.encoded.size(), 15U * 2);
}

TEST_F(LongFormRunTest, PassesOnFailures)
{
    recognizer.answer = [](size_t) -> WindowTokens { throw std::runtime_error("broken"); };
    EXPECT_THROW(run(sound(1)), std::runtime_error);
}

TEST_F(LongFormRunTest, OrdersTheWords)
{
    recognizer.answer = [](size_t) { return dense(); };
    const Transcript transcript = run(sound(3), { .boundarySearch = 3, .batchWindows = 2 });
    for (size_t i = 0; i + 1 < transcript.words.size(); ++i) {
        EXPECT_LE(transcript.words[i].end, transcript.words[i + 1].start);
        EXPECT_LE(transcript.words[i].start, transcript.words[i + 1].start);
    }
}

using LongFormRunDeathTest = LongFormRunTest;

TEST_F(LongFormRunDeathTest, StopsAtImpossibleTunables)
{
    EXPECT_DEATH(run({}, { .boundarySearch = 3, .batchWindows = 0 }), "a batch without windows");
    EXPECT_DEATH(run(sound(2), { .boundarySearch = 41, .batchWindows = 1 }), "audio outside what is held");
}
