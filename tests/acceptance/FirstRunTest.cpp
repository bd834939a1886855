// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "PublishedModels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace fs = std::filesystem;

using testing::MatchesRegex;

namespace {

class FirstRun : public testing::Test {
protected:
    Outcome check() const { return models.run({ TEST_PINS_PROGRAM, "--check-first-run" }); }

    // Fails in the fresh preparation with this sentence, which is told twice, and leaves nothing.
    void expectFreshFailure(const std::string& lines, const std::string& sentence) const
    {
        const auto outcome = check();
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.output, lines + "First-run check: " + sentence + "\n");
        EXPECT_EQ(outcome.errors, "Fresh preparation failed: " + sentence + "\n");
        EXPECT_TRUE(fs::is_empty(models.temporary()));
    }

    void expectSpeechFailure(const std::string& description) const
    {
        expectFreshFailure("First-run check: Preparing speech recognition…\n",
            "Couldn’t prepare speech recognition. " + description + " Retry when you’re ready.");
    }

    void expectCleanupFailure(const std::string& description) const
    {
        expectFreshFailure("First-run check: Preparing speech recognition…\nFirst-run check: Preparing text cleanup…\n",
            "Couldn’t prepare text cleanup. " + description + " Retry when you’re ready.");
    }

    PublishedModels models;
};

constexpr auto freshPreparation = "First-run check: Preparing speech recognition…\n"
                                  "First-run check: Preparing text cleanup…\n"
                                  "First-run check: Ready for dictation.\n";

} // namespace

TEST_F(FirstRun, GoesAllTheWayAndLeavesNothing)
{
    const auto outcome = check();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output,
        std::string(freshPreparation) + "First-run check: Both downloaded models ran inference successfully.\n"
            + freshPreparation + "First-run check: PASS: fresh downloads, inference, and offline cache reuse.\n");
    EXPECT_TRUE(fs::is_empty(models.temporary()));
    EXPECT_FALSE(fs::exists(models.cleanup())); // what this user has is not touched
    EXPECT_FALSE(fs::exists(models.speech()));
}

TEST_F(FirstRun, FailsWithoutANetwork)
{
    auto environment = models.environment();
    environment["TRW_HUB_ENDPOINT"] = "http://127.0.0.1:1";
    const auto outcome = runProgram({ TEST_PINS_PROGRAM, "--check-first-run" }, environment);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors,
        MatchesRegex(
            "Fresh preparation failed: Couldn’t prepare speech recognition\\. .+ Retry when you’re ready\\.\n"));
    EXPECT_TRUE(fs::is_empty(models.temporary()));
}

TEST_F(FirstRun, FailsForASpeechModelThatIsNotAsListed)
{
    models.hub.play(R"({"on": "content/embedding.f16", "fault": "flip", "at": 0})");
    expectSpeechFailure("integrity check failed for embedding.f16: sha256 mismatch");
}

TEST_F(FirstRun, FailsForASpeechModelThatCannotBeLoaded)
{
    models.hub.play(R"({"on": "content/meta.json", "fault": "flip", "at": 0})"); // listed without a digest
    const auto outcome = check();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors,
        MatchesRegex(
            "Fresh preparation failed: Couldn’t prepare speech recognition\\. .+ Retry when you’re ready\\.\n"));
    EXPECT_TRUE(fs::is_empty(models.temporary()));
}

TEST_F(FirstRun, FailsForOtherWeightsThanThePinnedOnes)
{
    models.hub.play(R"({"on": "content/s1-mini-q4_k_m.gguf", "fault": "flip", "at": 1000})");
    expectCleanupFailure("The download could not be verified. Please retry.");
}

TEST_F(FirstRun, FailsForAnArchiveWithoutTheTools)
{
    fs::remove(models.tools() / "llama-tokenize");
    models.publishTools();
    expectCleanupFailure("The downloaded runtime is incomplete. Please retry.");
}

TEST_F(FirstRun, FailsForAToolThatDoesNotStart)
{
    std::ofstream(models.tools() / "llama-tokenize.case") << "exit 127\n";
    models.publishTools();
    expectCleanupFailure("a cleanup tool failed or was stopped");
}

TEST_F(FirstRun, FailsForAModelThatEditsNothing)
{
    std::ofstream(models.tools() / "llama-completion.case")
        << "print\nUm, can you, can you make the labels smaller, uh, but keep the icon size?<|im_end|> [end of "
           "text]\n\n\n";
    models.publishTools();
    const auto outcome = check();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, freshPreparation);
    EXPECT_EQ(outcome.errors, "Downloaded cleanup model did not edit the synthetic transcript.\n");
    EXPECT_TRUE(fs::is_empty(models.temporary()));
}

TEST_F(FirstRun, FailsForAModelThatFails)
{
    models.replaceGenerator("test \"$1\" = --version");
    models.publishTools();
    const auto outcome = check();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, freshPreparation);
    EXPECT_EQ(outcome.errors, "a cleanup tool failed or was stopped\n");
    EXPECT_TRUE(fs::is_empty(models.temporary()));
}

TEST_F(FirstRun, LeavesNothingWhenTheUserStopsIt)
{
    models.hub.play(R"({"on": "content/s1-mini-q4_k_m.gguf", "fault": "stall", "after": 1000000})");
    RunningProgram program({ TEST_PINS_PROGRAM, "--check-first-run" }, models.environment());
    while (program.output().find("text cleanup") == std::string::npos && program.hasWritten()) { }
    program.interrupt();
    const auto outcome = program.finish();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "Fresh preparation failed: Setup paused. Resume when you’re ready.\n");
    EXPECT_TRUE(fs::is_empty(models.temporary()));
}

// Its first edit damages the weights: the second preparation would have to download them again.
TEST_F(FirstRun, FailsWhenReopeningNeedsTheNetwork)
{
    models.replaceGenerator("test \"$1\" = --version && exit\n"
                            "echo damaged >\"$(dirname \"$0\")/../model.gguf\"\n"
                            "printf 'Make the labels smaller.<|im_end|> [end of text]\\n\\n\\n'");
    models.publishTools();
    const auto outcome = check();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors,
        MatchesRegex("Offline reopen failed: Couldn’t prepare text cleanup\\. .+ Retry when you’re ready\\.\n"));
    EXPECT_TRUE(fs::is_empty(models.temporary()));
}
