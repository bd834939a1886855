// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "PlainTagger.h"

#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/Task.h>
#include <Sorvane/CleanupFailure.h>
#include <Sorvane/TranscriptCleanup.h>

#include <gtest/gtest.h>

namespace Sorvane {

namespace {

using Context = TranscriptCleanup::Context;
using Enabled = TranscriptCleanup::Enabled;
using PlatformSupport::Awaitable;
using PlatformSupport::Task;

constexpr const char* unusable = "Original used: cleanup was unavailable or returned no usable result.";

// A model that gives what a test wants.
class TranscriptCleanupTest : public testing::Test {
protected:
    CleanupResult clean(const std::string& text, Context context = Context::general, Enabled enabled = Enabled::yes)
    {
        return loop.finish(start(text, context, enabled));
    }

    Task<CleanupResult> start(
        const std::string& text, Context context = Context::general, Enabled enabled = Enabled::yes)
    {
        return PlatformSupport::startDetachedTask(
            loop.executor(), [=, this] { return cleanup.clean(text, enabled, context); });
    }

    Awaitable<std::string> generate(std::string text, Context context)
    {
        asked.emplace_back(std::move(text), context);
        if (whenAsked)
            whenAsked();
        co_return answer;
    }

    PlatformSupport::HandTurnedLoop loop;
    std::string answer = "Tidy.<|im_end|> [end of text]\n\n\n";
    std::function<void()> whenAsked;
    std::vector<std::pair<std::string, Context>> asked;
    PlainTagger tagger;
    TranscriptCleanup cleanup {
        [this](std::string text, Context context) { return generate(std::move(text), context); }, tagger
    };
};

CleanupResult original(const std::string& text, std::optional<std::string> message = std::nullopt)
{
    return { .text = text, .usedOriginal = true, .message = std::move(message) };
}

CleanupResult changed(const std::string& text)
{
    return { .text = text, .usedOriginal = false, .message = std::nullopt };
}

} // namespace

TEST_F(TranscriptCleanupTest, GivesWhatTheModelMadeOfIt)
{
    EXPECT_EQ(clean("um tidy", Context::email), changed("Tidy."));
    EXPECT_EQ(asked, (std::vector { std::pair(std::string("um tidy"), Context::email) }));
}

TEST_F(TranscriptCleanupTest, SaysWhenTheModelChangedNothing)
{
    answer = "As it was.<|im_end|>";
    EXPECT_EQ(clean("As it was."), original("As it was."));
}

TEST_F(TranscriptCleanupTest, AsksNoModelWhenThereIsNothingToDo)
{
    EXPECT_EQ(clean("um hello", Context::general, Enabled::no), original("um hello"));
    EXPECT_EQ(clean(""), original(""));
    EXPECT_EQ(clean("call it \"blue\""), original("call it \"blue\""));
    EXPECT_EQ(clean("define the word um"), original("define the word um"));
    EXPECT_TRUE(asked.empty());
}

TEST_F(TranscriptCleanupTest, TriesUpTo16000Bytes)
{
    const std::string longest(16'000, 'a');
    EXPECT_EQ(clean(longest).text, "Tidy.");
    EXPECT_EQ(clean(longest + "b"), original(longest + "b", "Original used: transcript is too long for cleanup."));
    EXPECT_EQ(asked.size(), 1u);
}

TEST_F(TranscriptCleanupTest, RefusesControlTokens)
{
    const std::string text = "say <|im_end|> now";
    EXPECT_EQ(clean(text), original(text, "Original used: transcript contains model control tokens."));
    EXPECT_TRUE(asked.empty());
}

TEST_F(TranscriptCleanupTest, DecidesInOrder)
{
    const std::string tooLong = "Original used: transcript is too long for cleanup.";
    const std::string tokens = "Original used: transcript contains model control tokens.";
    const std::string longest(16'001, '`');
    EXPECT_EQ(clean(longest + "<|", Context::general, Enabled::no), original(longest + "<|"));
    EXPECT_EQ(clean(longest + "<|"), original(longest + "<|", tooLong));
    EXPECT_EQ(clean("`um` <|"), original("`um` <|", tokens));
    EXPECT_EQ(clean("um `um`"), original("um `um`"));
    EXPECT_EQ(clean("um", Context::general, Enabled::no), original("um"));
    EXPECT_EQ(clean("um < |").text, "Tidy.");
    EXPECT_EQ(asked.size(), 1u);
}

TEST_F(TranscriptCleanupTest, DropsWhatIsNothingButHesitation)
{
    for (const std::string text : { "um, uh... er", "Ummm", " UHHH!? erm…\n", "er" })
        EXPECT_EQ(clean(text), changed("")) << text;
    EXPECT_TRUE(asked.empty());
    for (const std::string text : { "um, actually no", "errr", "umbrella", "uh-huh" })
        EXPECT_EQ(clean(text).text, "Tidy.") << text;
}

TEST_F(TranscriptCleanupTest, KnowsALongHesitationToo)
{
    std::string hesitation;
    while (hesitation.size() < 15'990)
        hesitation += "um, uhh erm er ";
    EXPECT_EQ(clean(hesitation), changed(""));
    EXPECT_EQ(clean(std::string(15'999, 'm') + "x").text, "Tidy.");
    EXPECT_EQ(clean("u" + std::string(15'999, 'm')), changed(""));
    EXPECT_EQ(clean(hesitation + "well").text, "Tidy.");
    EXPECT_EQ(asked.size(), 2u);
}

TEST_F(TranscriptCleanupTest, TakesAnyCharacter)
{
    for (const std::string& text : { std::string("\0", 1), std::string("a\0b", 3), std::string("\U0001F600\U0001F600"),
             std::string("\u202Eabc"), std::string("\xED\xA0\x80"), std::string(16'000, '\xFF') }) {
        EXPECT_EQ(clean(text), changed("Tidy."));
        EXPECT_EQ(asked.back().first, text);
    }
}

TEST_F(TranscriptCleanupTest, KeepsTheOriginalWhenTheModelFails)
{
    whenAsked = [] { throw CleanupFailure(CleanupFailure::Case::processFailed); };
    EXPECT_EQ(clean("um tidy"), original("um tidy", unusable));
    whenAsked = [] { throw CleanupFailure(CleanupFailure::Case::unavailable); };
    EXPECT_EQ(clean("um tidy"), original("um tidy", unusable));
    whenAsked = [] { throw std::bad_alloc(); };
    EXPECT_EQ(clean("um tidy"), original("um tidy", unusable));
    whenAsked = [] { throw PlatformSupport::CancellationError(); };
    EXPECT_EQ(clean("um tidy"), original("um tidy", unusable));
}

TEST_F(TranscriptCleanupTest, SaysWhenTheTranscriptHasTooManyTokens)
{
    whenAsked = [] { throw CleanupFailure(CleanupFailure::Case::inputTooLong); };
    EXPECT_EQ(clean("um tidy"), original("um tidy", "Original used: S1-mini supports up to 1,000 input tokens."));
}

TEST_F(TranscriptCleanupTest, KeepsTheOriginalWhenTheModelWroteNothingUsable)
{
    for (const std::string bad : { "", "Tidy.", "Tidy.<|im_end|> And on.", "<|im_end|> [end of text]\n\n\n" }) {
        answer = bad;
        EXPECT_EQ(clean("um tidy"), original("um tidy", unusable)) << bad;
    }
}

TEST_F(TranscriptCleanupTest, ExplainsNothingToWhoCancelled)
{
    const auto early = start("um tidy");
    early.cancel();
    EXPECT_EQ(loop.finish(early), original("um tidy"));
    EXPECT_TRUE(asked.empty());

    std::optional<Task<CleanupResult>> late;
    whenAsked = [&] { late->cancel(); };
    late = start("um tidy");
    EXPECT_EQ(loop.finish(*late), original("um tidy"));
    EXPECT_EQ(asked.size(), 1u);

    std::optional<Task<CleanupResult>> failed;
    whenAsked = [&] {
        failed->cancel();
        throw CleanupFailure(CleanupFailure::Case::inputTooLong);
    };
    failed = start("um tidy");
    EXPECT_EQ(loop.finish(*failed), original("um tidy"));
}

TEST_F(TranscriptCleanupTest, PutsASpokenListBackInShape)
{
    const std::string spoken = "um number one buy milk number two call mom";
    answer = "Buy milk and call mom.<|im_end|>";
    EXPECT_EQ(clean(spoken), changed("um:\n1. Buy milk\n2. Call mom"));
    answer = "1. Buy some milk\n2. Call Mom<|im_end|>";
    EXPECT_EQ(clean(spoken), changed("um:\n1. Buy some milk\n2. Call Mom"));
}

TEST_F(TranscriptCleanupTest, PutsASpokenSequenceInShape)
{
    answer = "First, wash the car, then buy milk, and then call mom.<|im_end|>";
    EXPECT_EQ(clean("first, wash the car, then buy milk, and then call mom"),
        changed("1. Wash the car\n2. Buy milk\n3. Call mom"));
}

TEST_F(TranscriptCleanupTest, LeavesTheLayoutOfAnEmailToTheModel)
{
    answer = "Buy milk and call mom.<|im_end|>";
    EXPECT_EQ(clean("number one buy milk number two call mom", Context::email), changed("Buy milk and call mom."));
    answer = "First, wash the car, then buy milk, then call mom.<|im_end|>";
    EXPECT_EQ(clean("first, wash the car, then buy milk, then call mom", Context::email),
        changed("First, wash the car, then buy milk, then call mom."));
}

TEST_F(TranscriptCleanupTest, TakesTextThatIsNoUTF8)
{
    EXPECT_EQ(clean("um \xFF\xC0 tidy").text, "Tidy.");
    whenAsked = [] { throw CleanupFailure(CleanupFailure::Case::processFailed); };
    EXPECT_EQ(clean("um \xFF\xC0 tidy"), original("um \xFF\xC0 tidy", unusable));
}

} // namespace Sorvane
