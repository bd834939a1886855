// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "OtherProgram.h"
#include "X11/X11Pasteboard.h"
#include "X11/X11Testing.h"

#include <DesktopServices/Pasteboard.h>
#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/Task.h>

#include <algorithm>
#include <future>

namespace DesktopLinux {

namespace {

using DesktopServices::PasteboardItem;
using DesktopServices::pasteboardStringType;
using PlatformSupport::startTask;
using Items = std::vector<PasteboardItem>;
using namespace std::chrono_literals;

constexpr size_t tenMegabytes = 10 * 1024 * 1024;

class PasteboardTest : public X11Testing {
protected:
    Items read(X11Pasteboard& from)
    {
        const auto items = [&] { return from.items(); };
        return loop.finish(startTask(loop.executor(), items));
    }
    Items read() { return read(pasteboard); }

    static std::vector<std::string> types(const Items& items)
    {
        std::vector<std::string> types;
        for (const auto& item : items)
            for (const auto& representation : item.representations)
                types.push_back(representation.type);
        std::ranges::sort(types);
        return types;
    }

    static std::string text(const Items& items)
    {
        for (const auto& item : items)
            for (const auto& [type, data] : item.representations)
                if (type == pasteboardStringType)
                    return { reinterpret_cast<const char*>(data.data()), data.size() };
        return "none";
    }

    void write(std::string_view words)
    {
        pasteboard.clearContents();
        ASSERT_TRUE(pasteboard.setString(words, pasteboardStringType));
    }

    OtherProgram other;
    X11Pasteboard pasteboard { connection, loop.executor(), clock };
};

TEST_F(PasteboardTest, OffersTextToOtherPrograms)
{
    write("Grüße");
    EXPECT_EQ(serve(other, "paste-text UTF8_STRING"), "Grüße");
    EXPECT_EQ(serve(other, "paste-text text/plain;charset=utf-8"), "Grüße");
    EXPECT_EQ(serve(other, "paste-text TEXT"), "Grüße");
    EXPECT_EQ(serve(other, "paste STRING"), "refused");
    write("plain");
    EXPECT_EQ(serve(other, "paste-text STRING"), "plain");
}

// A program that this one waits for may wait for the text.
TEST_F(PasteboardTest, OffersTextWhileTheMainThreadIsBusyWaiting)
{
    write("words");
    other.tell("paste-text UTF8_STRING");
    auto answer = std::async(std::launch::async, [&] { return other.answer(); });
    while (answer.wait_for(0s) != std::future_status::ready)
        connection.handOutUrgent();
    EXPECT_EQ(answer.get(), "words");
}

TEST_F(PasteboardTest, IsEmptyOnceCleared)
{
    write("words");
    pasteboard.clearContents();
    EXPECT_EQ(serve(other, "paste UTF8_STRING"), "refused");
    EXPECT_TRUE(read().empty());
}

TEST_F(PasteboardTest, TellsWhatItOffers)
{
    write("words");
    EXPECT_EQ(serve(other, "paste TARGETS").substr(0, 10), "ATOM 32 32");
    EXPECT_EQ(serve(other, "paste TIMESTAMP").substr(0, 12), "INTEGER 32 4");
}

TEST_F(PasteboardTest, ReadsItsOwnContents)
{
    write("words");
    EXPECT_EQ(text(read()), "words");
}

TEST_F(PasteboardTest, ReadsWhatAnotherProgramCopied)
{
    other.ask("offer-text UTF8_STRING words");
    other.ask("copy");
    EXPECT_EQ(text(read()), "words");
    EXPECT_EQ(types(read()), std::vector<std::string> { std::string(pasteboardStringType) });
}

TEST_F(PasteboardTest, IsEmptyWithoutAnOwner)
{
    other.ask("offer-text UTF8_STRING words");
    other.ask("copy");
    other.kill();
    EXPECT_TRUE(read().empty());
}

TEST_F(PasteboardTest, LeavesOutWhatTheOwnerDoesNotGive)
{
    other.ask("offer-text UTF8_STRING words");
    other.ask("offer image/png NOTHING 8 10");
    other.ask("copy");
    EXPECT_EQ(types(read()), std::vector<std::string> { std::string(pasteboardStringType) });
}

// Images and files, text in every form, numbers, and a password manager's hint.
TEST_F(PasteboardTest, GivesBackEverythingAsItWas)
{
    const std::vector<std::string> offers { "image/png image/png 8 10485760", "text/uri-list text/uri-list 8 70000",
        "TEXT UTF8_STRING 8 20", "NUMBERS INTEGER 32 400000", "SHORT SHORT 16 6", "EMPTY EMPTY 8 0",
        "x-kde-passwordManagerHint x-kde-passwordManagerHint 8 6", "TITLE saved~as~text 8 12",
        "saved~as~text saved~as~text 8 9", "public.utf8-plain-text public.utf8-plain-text 8 7" };
    for (const auto& offer : offers)
        other.ask("offer " + offer);
    other.ask("copy");
    const auto kept = read();
    ASSERT_EQ(types(kept).size(), offers.size());

    OtherProgram reader;
    std::vector<std::string> before;
    for (const auto& offer : offers) {
        reader.tell("paste " + offer.substr(0, offer.find(' ')));
        before.push_back(reader.answer());
    }
    pasteboard.clearContents();
    ASSERT_TRUE(pasteboard.writeItems(kept));
    for (size_t i = 0; i < offers.size(); ++i)
        EXPECT_EQ(serve(reader, "paste " + offers[i].substr(0, offers[i].find(' '))), before[i]);
}

TEST_F(PasteboardTest, CountsTheWritesOfAllPrograms)
{
    const auto atFirst = pasteboard.changeCount();
    other.ask("copy");
    const auto afterCopy = pasteboard.changeCount();
    EXPECT_GT(afterCopy, atFirst);
    EXPECT_EQ(pasteboard.changeCount(), afterCopy);
    write("words");
    const auto afterWrite = pasteboard.changeCount();
    EXPECT_GT(afterWrite, afterCopy);
    catchUp();
    EXPECT_EQ(pasteboard.changeCount(), afterWrite);
    other.ask("copy");
    EXPECT_GT(pasteboard.changeCount(), afterWrite);
}

TEST_F(PasteboardTest, DoesNotWriteOverWhatWasCopiedMeanwhile)
{
    pasteboard.clearContents();
    other.ask("offer-text UTF8_STRING theirs");
    other.ask("copy");
    EXPECT_FALSE(pasteboard.setString("ours", pasteboardStringType));
    EXPECT_EQ(text(read()), "theirs");
}

TEST_F(PasteboardTest, HandsLargeDataOverAlsoWhenItChangesMeanwhile)
{
    const std::string large(tenMegabytes, 'x');
    write(large);
    EXPECT_EQ(serve(other, "request UTF8_STRING"), "requested");
    write("small");
    OtherProgram second;
    EXPECT_EQ(serve(second, "paste-text UTF8_STRING"), "small");
}

class FrozenOwnerTest : public PasteboardTest {
protected:
    // Reads with time turned by hand, so that it is known how long it takes.
    X11Pasteboard byHand { connection, loop.executor(), handTurned };

    PlatformSupport::Task<Items> startReading()
    {
        const auto items = [this] { return byHand.items(); };
        const auto task = startTask(loop.executor(), items);
        loop.turnUntil([&] { return handTurned.sleepers() > 0; });
        return task;
    }

    static inline PlatformSupport::HandTurnedClock handTurned;
};

TEST_F(FrozenOwnerTest, IsNotWaitedFor)
{
    other.ask("offer-text UTF8_STRING words");
    other.ask("copy");
    other.freeze();
    const auto task = startReading();
    handTurned.advance(SelectionReader::timeToTell);
    EXPECT_TRUE(loop.finish(task).empty());
}

// Such as making a picture of what it copied.
TEST_F(FrozenOwnerTest, IsWaitedForWhileItMakesWhatItIsAskedFor)
{
    other.ask("offer image/png image/png 8 100");
    other.ask("copy");
    other.ask("stop-after 1");
    const auto task = startReading();
    while (!other.isFrozen())
        loop.turn();
    handTurned.advance(SelectionReader::timeForStep - 1ms);
    loop.turn();
    other.thaw();
    EXPECT_EQ(types(loop.finish(task)), std::vector<std::string> { "image/png" });
}

TEST_F(FrozenOwnerTest, IsReadAsFarAsItAnswered)
{
    other.ask("offer-text UTF8_STRING words");
    other.ask("offer ZZZ ZZZ 8 10");
    other.ask("copy");
    other.ask("ignore-after 2");
    const auto task = startReading();
    EXPECT_EQ(serve(other, "await-ignored"), "ignored");
    while (!task.isFinished()) {
        handTurned.advance(SelectionReader::timeForStep);
        loop.turn();
    }
    EXPECT_EQ(types(loop.finish(task)).size(), 1u);
}

TEST_F(FrozenOwnerTest, IsGivenUpWhenTheTaskIsCancelled)
{
    other.ask("copy");
    other.ask("ignore-after 0");
    const auto task = startReading();
    task.cancel();
    EXPECT_THROW(loop.finish(task), PlatformSupport::CancellationError);
}

TEST_F(FrozenOwnerTest, CanVanishWhileItIsAsked)
{
    other.ask("copy");
    other.ask("ignore-after 0");
    const auto task = startReading();
    other.kill();
    handTurned.advance(SelectionReader::timeToTell);
    EXPECT_TRUE(loop.finish(task).empty());
}

TEST_F(PasteboardTest, TakesNoDataWithoutEnd)
{
    other.ask("offer image/png image/png 8 100000");
    other.ask("copy");
    other.ask("endless");
    EXPECT_TRUE(read().empty()); // by its time, or by its size
}

TEST_F(PasteboardTest, IsNotHeldUpByAProgramThatFreezesWhileItPastes)
{
    write(std::string(tenMegabytes, 'x'));
    other.tell("request UTF8_STRING");
    OtherProgram second;
    EXPECT_EQ(serve(second, "paste UTF8_STRING").substr(0, 22), "UTF8_STRING 8 10485760");
    other.freeze();
    EXPECT_EQ(serve(second, "paste UTF8_STRING").substr(0, 22), "UTF8_STRING 8 10485760");
    other.kill();
    EXPECT_EQ(serve(second, "paste UTF8_STRING").substr(0, 22), "UTF8_STRING 8 10485760");
}

} // namespace

} // namespace DesktopLinux
