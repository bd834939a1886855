// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <Sorvane/CompletionFeedback.h>

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace Sorvane {
namespace {

using namespace std::chrono_literals;
using State = CompletionFeedback::State;

class CompletionFeedbackTest : public ::testing::Test {
protected:
    CompletionFeedbackTest()
    {
        feedback->onChange = [this] { states.push_back(feedback->state()); };
    }

    void pass(std::chrono::milliseconds time)
    {
        loop.turn();
        clock.advance(time);
    }

    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::HandTurnedClock clock { loop };
    std::optional<CompletionFeedback> feedback { std::in_place, loop.executor(), clock };
    std::vector<State> states;
};

TEST_F(CompletionFeedbackTest, ConfirmsWhatWasSavedAndInserted)
{
    feedback->show({ .saved = true, .inserted = true });
    EXPECT_EQ(feedback->state(), State::confirmation);
    EXPECT_EQ(feedback->confirmationText(), "Saved to history");
}

TEST_F(CompletionFeedbackTest, ConfirmsACopyWhetherItWasSavedOrNot)
{
    feedback->show({ .saved = false, .copied = true });
    EXPECT_EQ(feedback->state(), State::confirmation);
    EXPECT_EQ(feedback->confirmationText(), "Copied to clipboard");
}

TEST_F(CompletionFeedbackTest, AsksForAReviewWhereSomethingIsLeftToDo)
{
    feedback->show({ .saved = false, .inserted = true });
    EXPECT_EQ(feedback->state(), State::review);
    EXPECT_EQ(feedback->confirmationText(), "Saved to history");
    feedback->show({ .saved = true });
    EXPECT_EQ(feedback->state(), State::review);
    feedback->show({ .saved = true, .copied = true, .reviewRequested = true });
    EXPECT_EQ(feedback->state(), State::review);
    EXPECT_EQ(feedback->confirmationText(), "Copied to clipboard");
}

TEST_F(CompletionFeedbackTest, TakesAConfirmationAwayAfterAMomentAndAHalf)
{
    feedback->show({ .copied = true });
    pass(1499ms);
    EXPECT_EQ(feedback->state(), State::confirmation);
    pass(1ms);
    EXPECT_EQ(feedback->state(), State::hidden);
}

TEST_F(CompletionFeedbackTest, LeavesAReviewUntilItIsDismissed)
{
    feedback->show({ .saved = true });
    pass(1h);
    EXPECT_EQ(feedback->state(), State::review);
    feedback->dismiss();
    EXPECT_EQ(feedback->state(), State::hidden);
}

TEST_F(CompletionFeedbackTest, StartsEachConfirmationAnew)
{
    feedback->show({ .copied = true });
    pass(1s);
    feedback->show({ .copied = true });
    pass(1s);
    EXPECT_EQ(feedback->state(), State::confirmation);
    pass(500ms);
    EXPECT_EQ(feedback->state(), State::hidden);
}

TEST_F(CompletionFeedbackTest, DoesNotTakeAReviewAwayForAnEarlierConfirmation)
{
    feedback->show({ .copied = true });
    pass(1s);
    feedback->showReview();
    pass(1h);
    EXPECT_EQ(feedback->state(), State::review);
    EXPECT_EQ(feedback->confirmationText(), "Saved to history");
}

TEST_F(CompletionFeedbackTest, TellsOfEachChange)
{
    feedback->show({ .copied = true });
    pass(1500ms);
    EXPECT_EQ(states, (std::vector { State::hidden, State::confirmation, State::hidden }));
}

TEST_F(CompletionFeedbackTest, MayGoWhileAConfirmationStands)
{
    feedback->show({ .copied = true });
    loop.turn();
    feedback.reset();
    pass(2s);
    EXPECT_EQ(states.size(), 2U);
}

} // namespace
} // namespace Sorvane
