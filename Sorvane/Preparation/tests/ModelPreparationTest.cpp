// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <Sorvane/ModelPreparation.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace Sorvane {
namespace {

using namespace std::chrono_literals;
using PlatformSupport::Awaitable;
using Case = ModelPreparation::Stage::Case;
using Progress = ModelPreparation::Progress;

class ModelPreparationTest : public ::testing::Test {
protected:
    ModelPreparationTest()
    {
        preparation->onChange = [this] {
            stages.push_back(preparation->stage().which);
            fractions.push_back(preparation->fraction());
        };
    }

    // A stage that takes a second and counts how often it ran.
    ModelPreparation::Step taking(int& runs)
    {
        return [this, &runs](const Progress& progress) -> Awaitable<void> {
            ++runs;
            lastProgress = progress;
            co_await clock.sleep(1s);
        };
    }

    static ModelPreparation::Step failing(const std::string& words)
    {
        return [words](const Progress&) -> Awaitable<void> {
            throw std::runtime_error(words);
            co_return;
        };
    }

    void pass(std::chrono::nanoseconds time)
    {
        loop.turn();
        clock.advance(time);
    }

    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::HandTurnedClock clock { loop };
    PlatformSupport::RandomUUIDs uuids;
    std::optional<ModelPreparation> preparation { std::in_place, loop.executor(), uuids };
    std::vector<Case> stages;
    std::vector<double> fractions;
    Progress lastProgress;
    int speechRuns = 0;
    int cleanupRuns = 0;
};

TEST_F(ModelPreparationTest, RunsBothStagesAndIsReady)
{
    preparation->start(taking(speechRuns), taking(cleanupRuns));
    EXPECT_TRUE(preparation->task());
    pass(1s);
    EXPECT_EQ(preparation->stage().which, Case::cleanup);
    pass(1s);
    EXPECT_EQ(preparation->stage().which, Case::ready);
    EXPECT_EQ(preparation->fraction(), 1);
    EXPECT_FALSE(preparation->task());
    EXPECT_EQ(stages, (std::vector { Case::speech, Case::cleanup, Case::ready }));
}

TEST_F(ModelPreparationTest, KeepsTheRunInFlightWhenStartedAgain)
{
    int otherRuns = 0;
    preparation->start(taking(speechRuns), taking(cleanupRuns));
    preparation->start(taking(otherRuns), taking(otherRuns));
    pass(2s);
    EXPECT_EQ(otherRuns, 0);
    EXPECT_EQ(cleanupRuns, 1);
}

TEST_F(ModelPreparationTest, StaysReady)
{
    preparation->start(taking(speechRuns), taking(cleanupRuns));
    pass(2s);
    preparation->start(taking(speechRuns), taking(cleanupRuns));
    pass(2s);
    EXPECT_EQ(speechRuns, 1);
}

TEST_F(ModelPreparationTest, IsCanceledByItsTask)
{
    preparation->start(taking(speechRuns), taking(cleanupRuns));
    loop.turn();
    preparation->task()->cancel();
    loop.turn();
    EXPECT_EQ(preparation->stage().which, Case::canceled);
    EXPECT_FALSE(preparation->task());
    EXPECT_EQ(stages.back(), Case::canceled);
    EXPECT_EQ(cleanupRuns, 0);
}

TEST_F(ModelPreparationTest, IsCanceledEvenIfTheStageEndsWell)
{
    const auto careless = [this](const Progress&) -> Awaitable<void> {
        preparation->task()->cancel();
        co_return;
    };
    preparation->start(careless, taking(cleanupRuns));
    loop.turn();
    EXPECT_EQ(preparation->stage().which, Case::canceled);
}

TEST_F(ModelPreparationTest, TellsWhichStageFailedAndDoesNotGoOn)
{
    preparation->start(failing("The disk is full."), taking(cleanupRuns));
    loop.turn();
    EXPECT_EQ(preparation->stage().which, Case::failed);
    EXPECT_EQ(preparation->stage().message,
        "Couldn’t prepare speech recognition. The disk is full. Retry when you’re ready.");
    EXPECT_EQ(cleanupRuns, 0);
    EXPECT_FALSE(preparation->task());
}

TEST_F(ModelPreparationTest, BeginsFromTheStartAfterAFailure)
{
    preparation->start(taking(speechRuns), failing("No network."));
    pass(1s);
    EXPECT_EQ(preparation->stage().message, "Couldn’t prepare text cleanup. No network. Retry when you’re ready.");
    preparation->start(taking(speechRuns), taking(cleanupRuns));
    EXPECT_EQ(preparation->stage().which, Case::speech);
    EXPECT_EQ(preparation->fraction(), 0);
    pass(2s);
    EXPECT_EQ(preparation->stage().which, Case::ready);
    EXPECT_EQ(speechRuns, 2);
}

TEST_F(ModelPreparationTest, KeepsProgressWithinItsRange)
{
    preparation->start(taking(speechRuns), taking(cleanupRuns));
    loop.turn();
    for (const double fraction : { 0.25, 1.5, -0.2 })
        lastProgress(fraction);
    loop.turn();
    EXPECT_EQ(fractions, (std::vector { 0.0, 0.25, 1.0, 0.0 }));
}

TEST_F(ModelPreparationTest, DropsProgressOfAStageThatIsOver)
{
    preparation->start(taking(speechRuns), taking(cleanupRuns));
    loop.turn();
    const auto ofSpeech = lastProgress;
    pass(1s);
    ofSpeech(0.5);
    loop.turn();
    EXPECT_EQ(preparation->fraction(), 0);
}

TEST_F(ModelPreparationTest, DropsProgressOfARunThatIsOver)
{
    preparation->start(taking(speechRuns), taking(cleanupRuns));
    loop.turn();
    const auto ofFirstRun = lastProgress;
    preparation->task()->cancel();
    loop.turn();
    ofFirstRun(0.5);
    loop.turn();
    EXPECT_EQ(preparation->fraction(), 0);
    preparation->start(taking(speechRuns), taking(cleanupRuns));
    loop.turn();
    ofFirstRun(0.5);
    loop.turn();
    EXPECT_EQ(preparation->fraction(), 0);
}

TEST_F(ModelPreparationTest, MayGoWhileARunIsInFlight)
{
    preparation->start(taking(speechRuns), taking(cleanupRuns));
    loop.turn();
    preparation.reset();
    lastProgress(0.5);
    pass(2s);
    EXPECT_EQ(cleanupRuns, 0);
}

} // namespace
} // namespace Sorvane
