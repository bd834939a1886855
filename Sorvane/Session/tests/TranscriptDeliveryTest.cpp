// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/Task.h>
#include <Sorvane/TranscriptDelivery.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace Sorvane {
namespace {

using PlatformSupport::Awaitable;
using PlatformSupport::CancellationError;

// What happened, in words.
std::string words(const TranscriptDelivery::Result& result)
{
    if (const auto* const message = std::get_if<TranscriptDelivery::Message>(&result))
        return message->text;
    return std::holds_alternative<TranscriptDelivery::Inserted>(result) ? "inserted" : "copied";
}

class TranscriptDeliveryTest : public ::testing::Test {
protected:
    PlatformSupport::Task<TranscriptDelivery::Result> start(
        const std::string& text, TranscriptDelivery::Wishes wishes, const TranscriptDelivery::Insert& insert)
    {
        return PlatformSupport::startTask(
            loop.executor(), [=, this] { return delivery.deliver(text, wishes, insert); });
    }

    std::string deliver(TranscriptDelivery::Wishes wishes, const TranscriptDelivery::Insert& insert)
    {
        return words(loop.finish(start("Hello.", wishes, insert)));
    }

    TranscriptDelivery::Insert inserting()
    {
        return [this](bool keep) -> Awaitable<void> {
            keptTranscript.push_back(keep);
            co_return;
        };
    }

    static TranscriptDelivery::Insert failing()
    {
        return [](bool) -> Awaitable<void> {
            throw std::runtime_error("No field.");
            co_return;
        };
    }

    PlatformSupport::HandTurnedLoop loop;
    std::vector<std::string> clipboard;
    bool clipboardWorks = true;
    std::vector<bool> keptTranscript;
    TranscriptDelivery delivery { [this](const std::string& text) {
        clipboard.push_back(text);
        return clipboardWorks;
    } };
};

TEST_F(TranscriptDeliveryTest, InsertsAndSaysWhetherToKeepTheTranscriptOnTheClipboard)
{
    EXPECT_EQ(deliver({ .automaticallyCopy = true }, inserting()), "inserted");
    EXPECT_EQ(deliver({ .automaticallyCopy = false }, inserting()), "inserted");
    EXPECT_EQ(keptTranscript, (std::vector { true, false }));
    EXPECT_TRUE(clipboard.empty());
}

TEST_F(TranscriptDeliveryTest, CopiesWhatCannotBeInsertedWhateverTheUserWishes)
{
    EXPECT_EQ(deliver({ .automaticallyCopy = true }, failing()), "copied");
    EXPECT_EQ(deliver({ .automaticallyCopy = false }, failing()), "copied");
    EXPECT_EQ(clipboard, (std::vector<std::string> { "Hello.", "Hello." }));
}

TEST_F(TranscriptDeliveryTest, CopiesWhereNoFieldIsKnown)
{
    EXPECT_EQ(deliver({ .automaticallyCopy = false }, {}), "copied");
}

TEST_F(TranscriptDeliveryTest, InsertsNothingThatIsToBeReviewed)
{
    EXPECT_EQ(deliver({ .automaticallyCopy = true, .reviewRequested = true }, inserting()), "copied");
    EXPECT_TRUE(keptTranscript.empty());
}

TEST_F(TranscriptDeliveryTest, LeavesTheClipboardAloneForAReviewWithoutCopying)
{
    EXPECT_EQ(deliver({ .automaticallyCopy = false, .reviewRequested = true }, inserting()),
        "Your transcript is ready to review and copy.");
    EXPECT_TRUE(clipboard.empty());
}

TEST_F(TranscriptDeliveryTest, SaysWhenCopyingFailed)
{
    clipboardWorks = false;
    EXPECT_EQ(deliver({}, failing()), "Automatic copying failed. Your transcript is available below.");
}

TEST_F(TranscriptDeliveryTest, HasNothingToDoForAnEmptyText)
{
    EXPECT_EQ(words(loop.finish(start(" \n", {}, inserting()))), "No text to copy.");
    EXPECT_TRUE(keptTranscript.empty());
    EXPECT_TRUE(clipboard.empty());
}

TEST_F(TranscriptDeliveryTest, PassesACancelledInsertionOn)
{
    const auto cancelled = [](bool) -> Awaitable<void> {
        throw CancellationError();
        co_return;
    };
    EXPECT_THROW(deliver({}, cancelled), CancellationError);
    EXPECT_TRUE(clipboard.empty());
}

TEST_F(TranscriptDeliveryTest, DoesNothingOnceItsTaskIsCancelled)
{
    const auto task = start("Hello.", {}, inserting());
    task.cancel();
    EXPECT_THROW(loop.finish(task), CancellationError);
    EXPECT_TRUE(keptTranscript.empty());
}

TEST_F(TranscriptDeliveryTest, DoesNotCopyAfterAnInsertionDuringWhichItWasCancelled)
{
    PlatformSupport::Task<TranscriptDelivery::Result>* running = nullptr;
    const auto insert = [&](bool) -> Awaitable<void> {
        running->cancel();
        throw std::runtime_error("No field.");
        co_return;
    };
    auto task = start("Hello.", {}, insert);
    running = &task;
    EXPECT_THROW(loop.finish(task), CancellationError);
    EXPECT_TRUE(clipboard.empty());
}

} // namespace
} // namespace Sorvane
