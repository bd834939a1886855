// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InsertionTest.h"

#include <vector>

namespace Sorvane {
namespace {

using DesktopFakes::FakeKeyEvents;
using DesktopFakes::representation;
using DesktopServices::commandMask;
using DesktopServices::KeyDirection;
using DesktopServices::virtualKeyV;
using PlatformSupport::CancellationError;
using PlatformSupport::Task;

class PasteTest : public InsertionTest {
protected:
    Target target_ = capture();

    PasteTest() { desktop_.pasteboard.copy("apples"); }

    // Goes on until it sleeps.
    Task<> startPaste(Clipboard clipboard = Clipboard::restored)
    {
        const auto paste = [this, clipboard] { return insertion_.paste("pears", target_, clipboard); };
        auto task = PlatformSupport::startTask(loop_.executor(), paste);
        loop_.turn();
        return task;
    }

    std::optional<Case> pasteFailure()
    {
        const auto paste = startPaste();
        EXPECT_TRUE(paste.isFinished());
        return failureOf([&] { loop_.finish(paste); });
    }

    void expectNothingHappened()
    {
        EXPECT_EQ(note_.text(), "");
        EXPECT_EQ(desktop_.pasteboard.string(), "apples");
        EXPECT_TRUE(desktop_.keyEvents.posted.empty());
    }

    // ... and not even for a moment.
    void expectClipboardUntouched(std::int64_t changeCount)
    {
        expectNothingHappened();
        EXPECT_EQ(desktop_.pasteboard.changeCount(), changeCount);
    }
};

TEST_F(PasteTest, PressesThePasteKeyInTheDestination)
{
    startPaste();
    const auto process = editor_.processIdentifier();
    EXPECT_EQ(desktop_.keyEvents.posted,
        (std::vector<FakeKeyEvents::Posted> { { { virtualKeyV, KeyDirection::down, commandMask }, process },
            { { virtualKeyV, KeyDirection::up, commandMask }, process } }));
    EXPECT_EQ(virtualKeyV, 9);
    EXPECT_EQ(commandMask, 0x100000U);
    EXPECT_EQ(note_.text(), "pears");
}

TEST_F(PasteTest, PutsTheClipboardBackAfterNineTenthsOfASecond)
{
    const auto paste = startPaste();
    clock_.advance(899ms);
    EXPECT_EQ(desktop_.pasteboard.string(), "pears");
    EXPECT_FALSE(paste.isFinished());
    clock_.advance(1ms);
    EXPECT_TRUE(paste.isFinished());
    EXPECT_EQ(desktop_.pasteboard.string(), "apples");
}

TEST_F(PasteTest, ReachesAProgramThatIsSlowToPaste)
{
    editor_.pasteAfter(899ms);
    startPaste();
    clock_.advance(900ms);
    EXPECT_EQ(note_.text(), "pears");
}

TEST_F(PasteTest, NotesThatTheDestinationDidNotTakeTheText)
{
    editor_.pasteAfter(899ms);
    startPaste();
    clock_.advance(900ms);
    EXPECT_EQ(lastLogEntry(), "");
    editor_.pasteAfter(901ms);
    startPaste();
    clock_.advance(900ms);
    EXPECT_EQ(lastLogEntry(), "The destination did not ask for the transcript");
}

TEST_F(PasteTest, LeavesWhatTheUserCopiedMeanwhile)
{
    startPaste();
    clock_.advance(500ms);
    desktop_.pasteboard.copy("plums");
    clock_.advance(400ms);
    EXPECT_EQ(desktop_.pasteboard.string(), "plums");
}

TEST_F(PasteTest, LeavesAnEmptyClipboardEmpty)
{
    desktop_.pasteboard.copy(std::vector<DesktopServices::PasteboardItem>());
    startPaste();
    clock_.advance(900ms);
    EXPECT_TRUE(desktop_.pasteboard.contents().empty());
}

TEST_F(PasteTest, KeepsAllTypesOfAllThings)
{
    const std::vector<DesktopServices::PasteboardItem> things {
        { { representation("public.png", "a picture"), representation("public.tiff", "the same") } },
        { { representation("public.file-url", "file:///tmp/a") } },
    };
    desktop_.pasteboard.copy(things);
    startPaste();
    clock_.advance(900ms);
    EXPECT_EQ(desktop_.pasteboard.contents(), things);
}

TEST_F(PasteTest, LeavesTheTranscriptOnTheClipboardWhereThatIsWanted)
{
    startPaste(Clipboard::keepsTranscript);
    clock_.advance(900ms);
    EXPECT_EQ(desktop_.pasteboard.string(), "pears");
}

TEST_F(PasteTest, PutsTheClipboardBackWhenCancelledEvenIfTheTranscriptWasToStay)
{
    const auto paste = startPaste(Clipboard::keepsTranscript);
    clock_.advance(500ms);
    paste.cancel();
    EXPECT_NO_THROW(loop_.finish(paste));
    EXPECT_EQ(desktop_.pasteboard.string(), "apples");
    EXPECT_EQ(note_.text(), "pears");
}

TEST_F(PasteTest, DoesNothingForACancelledTask)
{
    const auto changeCount = desktop_.pasteboard.changeCount();
    const auto paste = PlatformSupport::startTask(
        loop_.executor(), [this] { return insertion_.paste("pears", target_, Clipboard::restored); });
    paste.cancel();
    EXPECT_THROW(loop_.finish(paste), CancellationError);
    expectClipboardUntouched(changeCount);
}

TEST_F(PasteTest, NeedsADestinationThatIsAsItWas)
{
    const auto changeCount = desktop_.pasteboard.changeCount();
    note_.disable();
    EXPECT_EQ(pasteFailure(), Case::unavailableTarget);
    expectClipboardUntouched(changeCount);
}

TEST_F(PasteTest, NeedsTheFocus)
{
    const auto changeCount = desktop_.pasteboard.changeCount();
    desktop_.leaveAll();
    EXPECT_EQ(pasteFailure(), Case::focusChanged);
    expectClipboardUntouched(changeCount);
}

TEST_F(PasteTest, NeedsAKeyToPress)
{
    const auto changeCount = desktop_.pasteboard.changeCount();
    for (const auto refusal :
        { FakeKeyEvents::Refusal::source, FakeKeyEvents::Refusal::keyDown, FakeKeyEvents::Refusal::keyUp }) {
        desktop_.keyEvents.refusal = refusal;
        EXPECT_EQ(pasteFailure(), Case::eventCreation);
        expectClipboardUntouched(changeCount);
    }
}

TEST_F(PasteTest, WaitsForTheUsersFingersToLeaveTheModifierKeys)
{
    desktop_.keyEvents.modifiersAreHeld = true;
    startPaste();
    clock_.advance(200ms);
    expectNothingHappened();
    desktop_.keyEvents.modifiersAreHeld = false;
    clock_.advance(10ms);
    EXPECT_EQ(note_.text(), "pears");
}

// Programs get the keys back, and with them the focus, a moment after the shortcut's key is up.
TEST_F(PasteTest, GivesTheProgramTimeToSayThatItHasTheFocusAgain)
{
    desktop_.keyEvents.modifiersAreHeld = true;
    startPaste();
    desktop_.leaveAll();
    desktop_.keyEvents.modifiersAreHeld = false;
    clock_.advance(100ms);
    expectNothingHappened();
    desktop_.clickInto(note_);
    clock_.advance(50ms);
    EXPECT_EQ(note_.text(), "pears");
}

TEST_F(PasteTest, DoesNotWaitForTheFocusForEver)
{
    const auto changeCount = desktop_.pasteboard.changeCount();
    desktop_.keyEvents.modifiersAreHeld = true;
    const auto paste = startPaste();
    desktop_.leaveAll();
    desktop_.keyEvents.modifiersAreHeld = false;
    clock_.advance(1600ms);
    EXPECT_EQ(failureOf([&] { loop_.finish(paste); }), Case::focusChanged);
    expectClipboardUntouched(changeCount);
}

TEST_F(PasteTest, GivesUpOnModifierKeysThatStayDown)
{
    const auto changeCount = desktop_.pasteboard.changeCount();
    desktop_.keyEvents.modifiersAreHeld = true;
    const auto paste = startPaste();
    clock_.advance(2s);
    EXPECT_EQ(failureOf([&] { loop_.finish(paste); }), Case::eventCreation);
    expectClipboardUntouched(changeCount);
}

TEST_F(PasteTest, IsCancelledWhileItWaitsForTheModifierKeys)
{
    const auto changeCount = desktop_.pasteboard.changeCount();
    desktop_.keyEvents.modifiersAreHeld = true;
    const auto paste = startPaste();
    paste.cancel();
    EXPECT_THROW(loop_.finish(paste), CancellationError);
    expectClipboardUntouched(changeCount);
}

TEST_F(PasteTest, IsCancelledWhileItReadsTheClipboard)
{
    const auto changeCount = desktop_.pasteboard.changeCount();
    desktop_.pasteboard.takeTimeToRead(100ms);
    const auto paste = startPaste();
    EXPECT_FALSE(paste.isFinished());
    paste.cancel();
    EXPECT_THROW(loop_.finish(paste), CancellationError);
    expectClipboardUntouched(changeCount);
}

TEST_F(PasteTest, PutsTheClipboardBackWhereItDoesNotTakeTheText)
{
    desktop_.pasteboard.failNextSetString();
    EXPECT_EQ(pasteFailure(), Case::clipboardWrite);
    expectNothingHappened();
}

TEST_F(PasteTest, PutsTheClipboardBackWhereTheFieldIsGoneInTheLastMoment)
{
    desktop_.pasteboard.onNextSetString([this] { note_.remove(); });
    EXPECT_EQ(pasteFailure(), Case::unavailableTarget);
    expectNothingHappened();
}

TEST_F(PasteTest, PutsTheClipboardBackWhereTheFocusLeavesInTheLastMoment)
{
    desktop_.pasteboard.onNextSetString([this] { window_.addTextField().focus(); });
    EXPECT_EQ(pasteFailure(), Case::focusChanged);
    expectNothingHappened();
}

TEST_F(PasteTest, LeavesWhatTheUserCopiedBeforeTheFailure)
{
    desktop_.pasteboard.onNextSetString([this] {
        note_.onNextRead([this] { desktop_.pasteboard.copy("plums"); });
        note_.disable();
    });
    EXPECT_EQ(pasteFailure(), Case::unavailableTarget);
    EXPECT_EQ(desktop_.pasteboard.string(), "plums");
}

} // namespace
} // namespace Sorvane
