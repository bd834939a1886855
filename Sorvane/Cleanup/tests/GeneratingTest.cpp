// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CleanupTestbed.h"
#include "PlainTagger.h"
#include "TokenCount.h"
#include "ToolArguments.h"

#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/SystemClock.h>
#include <Sorvane/TranscriptCleanup.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace Sorvane {

namespace {

using Case = CleanupFailure::Case;
using Context = TranscriptCleanup::Context;
using testing::ElementsAre;
using testing::IsEmpty;

class GeneratingTest : public testing::Test {
protected:
    PlatformSupport::Task<std::string> start(const std::string& text, Context context = Context::general)
    {
        return PlatformSupport::startDetachedTask(testbed.loop.executor(),
            [=, this] { return TranscriptCleanup::generate(text, context, files, testbed.process, tagger); });
    }

    std::string generate(const std::string& text, Context context = Context::general)
    {
        return testbed.loop.finish(start(text, context));
    }

    std::optional<Case> failure(const std::string& text = "um hello")
    {
        return failureOf([&] { generate(text); });
    }

    void setTokens(size_t count)
    {
        std::string ids;
        for (size_t i = 0; i < count; ++i)
            ids += (i == 0 ? "" : ", ") + std::to_string(i);
        testbed.setCase(files.tokeniser(), "print\n[" + ids + "]\n");
    }

    std::vector<std::string> argumentsOf(const std::filesystem::path& tool) const
    {
        std::vector<std::string> arguments = testbed.record(tool)["arguments"];
        arguments.pop_back(); // the prompt's path
        return arguments;
    }

    PlatformSupport::SystemClock clock;
    ProcessTestbed testbed { clock };
    CleanupFiles files = testbed.files();
    PlainTagger tagger;
};

} // namespace

TEST_F(GeneratingTest, CountsTheTextAndContinuesThePrompt)
{
    EXPECT_EQ(generate("um, hello there", Context::email), "Hello there.<|im_end|> [end of text]\n\n\n");
    EXPECT_EQ(testbed.prompt(files.tokeniser()), "um, hello there");
    EXPECT_EQ(testbed.prompt(files.generator()), TranscriptCleanup::prompt("um, hello there", Context::email, tagger));
    EXPECT_THAT(argumentsOf(files.tokeniser()),
        ElementsAre("--model", files.weights().string(), "--ids", "--no-bos", "--no-parse-special", "--no-escape",
            "--offline", "--binary-file"));
    EXPECT_THAT(argumentsOf(files.generator()),
        ElementsAre("--model", files.weights().string(), "--ctx-size", "4096", "--n-predict", "36", "--temp", "0",
            "--seed", "42", "--threads", "4", "--offline", "--no-escape", "--no-conversation", "--no-display-prompt",
            "--simple-io", "--no-warmup", "--special", "--no-context-shift", "--binary-file"));
    EXPECT_THAT(testbed.temporaryFiles(), IsEmpty());
}

TEST_F(GeneratingTest, ShowsNoWordToOtherUsers)
{
    generate("um, confidential takeover");
    for (const auto& tool : { files.tokeniser(), files.generator() })
        EXPECT_THAT(testbed.record(tool).dump(), testing::Not(testing::HasSubstr("confidential"))) << tool;
}

TEST_F(GeneratingTest, NeedsBothToolsAndWeightsOfTheRightSize)
{
    const auto expectUnavailable = [&] {
        EXPECT_EQ(failure(), Case::unavailable);
        EXPECT_FALSE(testbed.hasRun(files.tokeniser()));
    };
    std::filesystem::resize_file(files.weights(), cleanupWeightsSize - 1);
    expectUnavailable();
    std::filesystem::remove(files.weights());
    expectUnavailable();
    std::ofstream(files.weights()).close();
    std::filesystem::resize_file(files.weights(), cleanupWeightsSize);
    for (const auto& tool : { files.generator(), files.tokeniser() }) {
        std::filesystem::rename(tool, tool.string() + ".away");
        expectUnavailable();
        std::filesystem::create_directory(tool);
        expectUnavailable();
        std::filesystem::remove(tool);
        std::ofstream(tool).close(); // not executable
        expectUnavailable();
        std::filesystem::remove(tool);
        std::filesystem::rename(tool.string() + ".away", tool);
    }
    EXPECT_EQ(failure(), std::nullopt);
}

TEST_F(GeneratingTest, TakesUpTo1000Tokens)
{
    setTokens(1001);
    EXPECT_EQ(failure(), Case::inputTooLong);
    EXPECT_FALSE(testbed.hasRun(files.generator()));
    setTokens(1000);
    EXPECT_EQ(failure(), std::nullopt);
    EXPECT_EQ(argumentsOf(files.generator())[5], "1332");
}

TEST_F(GeneratingTest, FailsWithEitherTool)
{
    testbed.setCase(files.generator(), "exit 1");
    EXPECT_EQ(failure(), Case::processFailed);
    testbed.setCase(files.tokeniser(), "exit 127");
    EXPECT_EQ(failure(), Case::processFailed);
}

TEST_F(GeneratingTest, RefusesATokeniserThatCountsNothing)
{
    testbed.setCase(files.tokeniser(), "print\n"); // its output got lost
    EXPECT_EQ(failure(), Case::invalidOutput);
    EXPECT_FALSE(testbed.hasRun(files.generator()));
}

TEST_F(GeneratingTest, GivesWhatTheGeneratorWroteUnchanged)
{
    for (const std::string output :
        { "", "cut off\n\n", " [end of text]\n\n\n", "A<|endoftext|> [end of text]\n\n\n" }) {
        testbed.setCase(files.generator(), "print\n" + output);
        EXPECT_EQ(generate("um hello"), output);
    }
}

TEST_F(GeneratingTest, EndsBetweenTheToolsWhenCancelled)
{
    testbed.setCase(files.tokeniser(), "wait\n[1]");
    testbed.announceLife(files.tokeniser());
    const auto task = start("um hello");
    testbed.loop.turn();
    const ToolWatch watch(files.tokeniser());
    task.cancel();
    EXPECT_ANY_THROW(testbed.loop.finish(task));
    EXPECT_FALSE(testbed.hasRun(files.generator()));
    EXPECT_THAT(testbed.temporaryFiles(), IsEmpty());
}

TEST(TokenCount, ReadsAnArrayOfIntegers)
{
    EXPECT_EQ(tokenCount("[260, 11, 268, 265]\n"), 4u);
    EXPECT_EQ(tokenCount(" \n[]\n\n"), 0u);
    EXPECT_EQ(tokenCount("[-1,18446744073709551615]"), 2u);
}

TEST(TokenCount, RefusesEverythingElse)
{
    for (const std::string output : { "", "[", "[1", "[1,]", "1", "[1] [2]", "[1.5]", "[\"1\"]", "[true]", "[null]",
             "[[1]]", "{}", "null", "[1]\n[end]", "\xFF" }) {
        EXPECT_EQ(failureOf([&] { tokenCount(output); }), Case::invalidOutput) << output;
    }
    const std::string deep(CleanupProcess::longestOutput / 4, '[');
    EXPECT_EQ(failureOf([&] { tokenCount(deep); }), Case::invalidOutput);
    EXPECT_EQ(failureOf([&] { tokenCount(deep + std::string(deep.size(), ']')); }), Case::invalidOutput);
}

TEST(TokenBudget, IsTheTokensTimesOnePointThreeRoundedUpAnd32)
{
    EXPECT_EQ(tokenBudget(0), 32u);
    EXPECT_EQ(tokenBudget(1), 34u);
    EXPECT_EQ(tokenBudget(3), 36u);
    EXPECT_EQ(tokenBudget(10), 45u);
    EXPECT_EQ(tokenBudget(70), 123u);
    EXPECT_EQ(tokenBudget(999), 1331u);
    EXPECT_EQ(tokenBudget(1000), 1332u);
}

} // namespace Sorvane
