// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InsertionTest.h"

#include <Sorvane/ClipboardSnapshot.h>

namespace Sorvane {
namespace {

using DesktopFakes::representation;
using DesktopServices::pasteboardStringType;

class ClipboardSnapshotTest : public InsertionTest {
protected:
    ClipboardSnapshot snapshot()
    {
        const auto read = [this] { return ClipboardSnapshot::of(desktop_.pasteboard); };
        return loop_.finish(PlatformSupport::startTask(loop_.executor(), read));
    }

    const std::vector<DesktopServices::PasteboardItem> pictures_ {
        { { representation("public.png", "a picture"), representation("public.tiff", std::string_view("\0\1", 2)) } },
        { { representation("public.file-url", "file:///tmp/a"), representation(pasteboardStringType, "a") } },
    };
};

TEST_F(ClipboardSnapshotTest, KeepsEveryTypeOfEveryItemInOrder)
{
    desktop_.pasteboard.copy(pictures_);
    const auto kept = snapshot();
    EXPECT_EQ(kept.items(), pictures_);
    desktop_.pasteboard.copy("something else");
    kept.restore(desktop_.pasteboard, desktop_.pasteboard.changeCount());
    EXPECT_EQ(desktop_.pasteboard.contents(), pictures_);
}

TEST_F(ClipboardSnapshotTest, OfNothingIsEmpty)
{
    const auto kept = snapshot();
    EXPECT_TRUE(kept.items().empty());
    desktop_.pasteboard.copy("something");
    kept.restore(desktop_.pasteboard, desktop_.pasteboard.changeCount());
    EXPECT_TRUE(desktop_.pasteboard.contents().empty());
}

TEST_F(ClipboardSnapshotTest, LeavesWhatSomebodyWroteSince)
{
    desktop_.pasteboard.copy("apples");
    const auto kept = snapshot();
    const auto changeCount = desktop_.pasteboard.changeCount();
    desktop_.pasteboard.copy("pears");
    const auto changeCountOfPears = desktop_.pasteboard.changeCount();
    kept.restore(desktop_.pasteboard, changeCount);
    EXPECT_EQ(desktop_.pasteboard.string(), "pears");
    EXPECT_EQ(desktop_.pasteboard.changeCount(), changeCountOfPears);
}

TEST_F(ClipboardSnapshotTest, ReadsAgainWhatChangedMeanwhile)
{
    desktop_.pasteboard.copy("apples");
    desktop_.pasteboard.onNextRead([this] { desktop_.pasteboard.copy("pears"); });
    EXPECT_EQ(snapshot().items().at(0).representations.at(0), representation(pasteboardStringType, "pears"));
}

TEST_F(ClipboardSnapshotTest, GivesUpOnAClipboardThatNeverRests)
{
    int reads = 0;
    std::function<void()> copyAgain = [&] {
        desktop_.pasteboard.copy(std::to_string(++reads));
        desktop_.pasteboard.onNextRead(copyAgain);
    };
    desktop_.pasteboard.onNextRead(copyAgain);
    EXPECT_EQ(snapshot().items().at(0).representations.at(0), representation(pasteboardStringType, "2"));
    EXPECT_EQ(reads, 3);
}

} // namespace
} // namespace Sorvane
