// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "DesktopTest.h"

namespace DesktopFakes {
namespace {

using DesktopServices::commandMask;
using DesktopServices::KeyDirection;
using DesktopServices::virtualKeyV;

class FakePasteTest : public DesktopTest {
protected:
    FakePasteTest() { desktop_.pasteboard.copy("pears"); }

    void post(KeyDirection direction, std::uint64_t flags = commandMask)
    {
        auto event = source_->makeEvent(virtualKeyV, direction).value();
        event.flags = flags;
        source_->post(event, editor_.processIdentifier());
    }

    void pressPaste()
    {
        post(KeyDirection::down);
        post(KeyDirection::up);
    }

    std::unique_ptr<DesktopServices::KeyEventSource> source_ = desktop_.keyEvents.makePrivateSource();
};

TEST_F(FakePasteTest, WritesTheClipboardIntoTheFocusedField)
{
    field_.type("apples and ");
    pressPaste();
    EXPECT_EQ(field_.text(), "apples and pears");
    EXPECT_EQ(desktop_.keyEvents.posted.size(), 2U);
}

TEST_F(FakePasteTest, WaitsForTheKeyToComeUp)
{
    post(KeyDirection::down);
    EXPECT_EQ(field_.text(), "");
    post(KeyDirection::up);
    EXPECT_EQ(field_.text(), "pears");
}

TEST_F(FakePasteTest, NeedsTheCommandKeyAndBothEvents)
{
    post(KeyDirection::down, 0);
    post(KeyDirection::up, 0);
    post(KeyDirection::up);
    EXPECT_EQ(field_.text(), "");
}

TEST_F(FakePasteTest, ReplacesWhatIsSelected)
{
    field_.type("apples and plums");
    field_.select("apples");
    pressPaste();
    EXPECT_EQ(field_.text(), "pears and plums");
}

TEST_F(FakePasteTest, TakesWhatIsOnTheClipboardWhenItGetsToIt)
{
    editor_.pasteAfter(1s);
    pressPaste();
    desktop_.pasteboard.copy("apples");
    clock_.advance(1s);
    EXPECT_EQ(field_.text(), "apples");
}

TEST_F(FakePasteTest, KeepsTheKeysForAFrozenProgram)
{
    editor_.freeze();
    pressPaste();
    EXPECT_EQ(field_.text(), "");
    editor_.thaw();
    EXPECT_EQ(field_.text(), "pears");
}

TEST_F(FakePasteTest, DoesNothingWhereNoTextGoes)
{
    field_.disable();
    pressPaste();
    field_.enable();
    window_.addGroup().focus();
    pressPaste();
    field_.focus();
    editor_.quit();
    pressPaste();
    EXPECT_EQ(field_.text(), "");
}

TEST_F(FakePasteTest, PastesNothingFromAClipboardWithoutText)
{
    desktop_.pasteboard.copy({ { { representation("public.png", "...") } } });
    pressPaste();
    EXPECT_EQ(field_.text(), "");
}

TEST_F(FakePasteTest, IsRefusedOnRequest)
{
    desktop_.keyEvents.refusal = FakeKeyEvents::Refusal::keyUp;
    EXPECT_TRUE(source_->makeEvent(virtualKeyV, KeyDirection::down));
    EXPECT_FALSE(source_->makeEvent(virtualKeyV, KeyDirection::up));
    desktop_.keyEvents.refusal = FakeKeyEvents::Refusal::source;
    EXPECT_EQ(desktop_.keyEvents.makePrivateSource(), nullptr);
}

} // namespace
} // namespace DesktopFakes
