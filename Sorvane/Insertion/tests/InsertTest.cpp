// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InsertionTest.h"

#include <vector>

namespace Sorvane {
namespace {

using PlatformSupport::Awaitable;
using PlatformSupport::CancellationError;
using PlatformSupport::Task;

class InsertTest : public InsertionTest {
protected:
    Target target_ = capture();

    Task<> startInsertion(Clipboard clipboard = Clipboard::restored)
    {
        const auto insert = [this, clipboard] { return insertion_.insert("pears", target_, clipboard); };
        return PlatformSupport::startTask(loop_.executor(), insert);
    }
};

// The steps of an insertion, as a script answers them.
class InsertStepsTest : public InsertTest {
protected:
    std::vector<std::string> steps_;
    int looks_ = 0; // at the focus
    int focusedFromLook_ = 1; // 1 is the first; 0 is never
    bool isActive_ = false;
    int activeFromWait_ = 1;
    int waits_ = 0;
    std::optional<Case> validationFailure_;

    InsertStepsTest()
    {
        insertion_.destinationAccess = DestinationAccess {
            .validate = [this](const Target&) { validate(); },
            .isAppActive = [this](const Target&) { return isActive_; },
            .isFocused = [this](const Target&) { return isFocused(); },
            .activate = [this](const Target&) { steps_.emplace_back("activate"); },
            .focus = [this](const Target&) { steps_.emplace_back("focus"); },
            .paste = [this](const std::string& text, const Target&) { return paste(text); },
            .wait = [this] { return wait(); },
        };
    }

    void validate() const
    {
        if (validationFailure_)
            throw InsertionError(*validationFailure_);
    }

    bool isFocused() { return ++looks_ >= focusedFromLook_ && focusedFromLook_ > 0; }

    Awaitable<void> paste(std::string text)
    {
        steps_.push_back("paste " + text);
        co_return;
    }

    Awaitable<void> wait()
    {
        PlatformSupport::checkCancellation();
        if (++waits_ == activeFromWait_)
            isActive_ = true;
        co_return;
    }

    std::optional<Case> insertionFailure()
    {
        return failureOf([&] { loop_.finish(startInsertion()); });
    }
};

TEST_F(InsertStepsTest, PastesAtOnceWhereTheFieldHasTheFocus)
{
    EXPECT_EQ(insertionFailure(), std::nullopt);
    EXPECT_EQ(steps_, (std::vector<std::string> { "paste pears" }));
    EXPECT_EQ(waits_, 0);
}

TEST_F(InsertStepsTest, RefusesATargetWithoutAFieldBeforeAnythingElse)
{
    target_.element.reset();
    validationFailure_ = Case::permission;
    EXPECT_EQ(insertionFailure(), Case::unverifiedField);
    EXPECT_EQ(looks_, 0);
}

TEST_F(InsertStepsTest, WaitsThirtyTimesAndAsksForTheFocusOnce)
{
    focusedFromLook_ = 0;
    EXPECT_EQ(insertionFailure(), Case::focusChanged);
    EXPECT_EQ(waits_, 30);
    EXPECT_EQ(looks_, 32); // before, at each turn of the loop, and after
    EXPECT_EQ(steps_, (std::vector<std::string> { "activate", "focus" }));
}

TEST_F(InsertStepsTest, AsksForNoFocusInAProgramThatStaysBehind)
{
    focusedFromLook_ = 0;
    activeFromWait_ = 0;
    EXPECT_EQ(insertionFailure(), Case::focusChanged);
    EXPECT_EQ(steps_, (std::vector<std::string> { "activate" }));
}

TEST_F(InsertStepsTest, DoesNotActivateWhatIsInFront)
{
    isActive_ = true;
    focusedFromLook_ = 3;
    EXPECT_EQ(insertionFailure(), std::nullopt);
    EXPECT_EQ(steps_, (std::vector<std::string> { "focus", "paste pears" }));
    EXPECT_EQ(waits_, 1);
}

TEST_F(InsertStepsTest, TakesAFocusThatComesWithTheLastWait)
{
    focusedFromLook_ = 32;
    EXPECT_EQ(insertionFailure(), std::nullopt);
    EXPECT_EQ(waits_, 30);
    EXPECT_EQ(steps_.back(), "paste pears");
}

TEST_F(InsertStepsTest, ProvesTheDestinationFirst)
{
    validationFailure_ = Case::unavailableTarget;
    EXPECT_EQ(insertionFailure(), Case::unavailableTarget);
    EXPECT_EQ(looks_, 0);
}

TEST_F(InsertStepsTest, ProvesTheDestinationAtEveryTurn)
{
    focusedFromLook_ = 0;
    insertion_.destinationAccess->wait = [this]() -> Awaitable<void> {
        validationFailure_ = Case::secureField;
        ++waits_;
        co_return;
    };
    EXPECT_EQ(insertionFailure(), Case::secureField);
    EXPECT_EQ(waits_, 1);
}

TEST_F(InsertStepsTest, ProvesTheDestinationBeforeThePaste)
{
    insertion_.destinationAccess->isFocused = [this](const Target&) {
        validationFailure_ = Case::unavailableTarget;
        return true;
    };
    EXPECT_EQ(insertionFailure(), Case::unavailableTarget);
    EXPECT_TRUE(steps_.empty());
}

TEST_F(InsertStepsTest, EndsWithAWaitThatFails)
{
    focusedFromLook_ = 0;
    insertion_.destinationAccess->wait = [this]() -> Awaitable<void> {
        ++waits_;
        throw CancellationError();
        co_return;
    };
    EXPECT_THROW(loop_.finish(startInsertion()), CancellationError);
    EXPECT_EQ(waits_, 1);
}

TEST_F(InsertStepsTest, DoesNothingForACancelledTask)
{
    const auto insertion = startInsertion();
    insertion.cancel();
    EXPECT_THROW(loop_.finish(insertion), CancellationError);
    EXPECT_EQ(looks_, 0);
}

TEST_F(InsertStepsTest, PassesAFailedPasteOn)
{
    insertion_.destinationAccess->paste = [](const std::string&, const Target&) -> Awaitable<void> {
        throw InsertionError(InsertionError::Case::clipboardWrite);
        co_return;
    };
    EXPECT_EQ(insertionFailure(), Case::clipboardWrite);
}

TEST_F(InsertTest, TouchesNothingWhereTheFieldHasTheFocus)
{
    const auto insertion = startInsertion();
    clock_.advance(0s);
    EXPECT_EQ(note_.text(), "pears");
    EXPECT_EQ(editor_.timesActivated(), 0U);
    EXPECT_TRUE(desktop_.accessibility.changes().empty());
    EXPECT_EQ(elapsed(), 0s);
    clock_.advance(900ms);
    EXPECT_TRUE(insertion.isFinished());
}

TEST_F(InsertTest, BringsAHiddenProgramBack)
{
    desktop_.launch({ .name = "Mail" });
    editor_.comeToFrontAfter(120ms);
    const auto insertion = startInsertion();
    clock_.advance(119ms);
    EXPECT_EQ(note_.text(), "");
    clock_.advance(31ms);
    EXPECT_EQ(note_.text(), "pears");
    EXPECT_EQ(editor_.timesActivated(), 1U);
    clock_.advance(900ms);
    loop_.finish(insertion);
}

TEST_F(InsertTest, RaisesTheWindowAndFocusesTheFieldOnce)
{
    editor_.openWindow("Other").addTextArea().focus();
    const auto insertion = startInsertion();
    clock_.advance(1s);
    loop_.finish(insertion);
    EXPECT_EQ(note_.text(), "pears");
    EXPECT_EQ(desktop_.accessibility.changes(),
        (std::vector<std::string> {
            "write AXMinimized false", "perform AXRaise", "write AXMain true", "write AXFocused true" }));
}

TEST_F(InsertTest, FocusesAFieldWithoutAWindow)
{
    target_.window.reset();
    window_.addTextField("Other").focus();
    const auto insertion = startInsertion();
    clock_.advance(1s);
    loop_.finish(insertion);
    EXPECT_EQ(note_.text(), "pears");
    EXPECT_EQ(desktop_.accessibility.changes(), (std::vector<std::string> { "write AXFocused true" }));
}

TEST_F(InsertTest, GivesUpAfterOneAndAHalfSeconds)
{
    note_.refuseFocus();
    window_.addTextField("Other").focus();
    const auto insertion = startInsertion();
    clock_.advance(1499ms);
    EXPECT_FALSE(insertion.isFinished());
    clock_.advance(1ms);
    EXPECT_TRUE(insertion.isFinished());
    EXPECT_EQ(failureOf([&] { loop_.finish(insertion); }), Case::focusChanged);
}

TEST_F(InsertTest, EndsAtOnceWhenCancelledBetweenTwoLooks)
{
    editor_.ignoreActivation();
    desktop_.leaveAll();
    const auto insertion = startInsertion();
    clock_.advance(120ms);
    insertion.cancel();
    loop_.turn();
    EXPECT_TRUE(insertion.isFinished());
    EXPECT_THROW(loop_.finish(insertion), CancellationError);
}

TEST_F(InsertTest, DoesNotWaitForAFieldThatIsGone)
{
    editor_.ignoreActivation();
    desktop_.leaveAll();
    const auto insertion = startInsertion();
    clock_.advance(120ms);
    note_.remove();
    clock_.advance(30ms);
    EXPECT_TRUE(insertion.isFinished());
    EXPECT_EQ(failureOf([&] { loop_.finish(insertion); }), Case::unavailableTarget);
}

TEST_F(InsertTest, KeepsTheTranscriptOnTheClipboardWhereThatIsWanted)
{
    desktop_.pasteboard.copy("apples");
    const auto insertion = startInsertion(Clipboard::keepsTranscript);
    clock_.advance(900ms);
    loop_.finish(insertion);
    EXPECT_EQ(desktop_.pasteboard.string(), "pears");
}

} // namespace
} // namespace Sorvane
