// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InsertionOnTheDesktop.h"

namespace Sorvane {

namespace {

TEST_F(InsertionOnTheDesktop, PutsTheTextIntoTheFieldAndGivesTheClipboardBack)
{
    other.ask("offer-text UTF8_STRING theirs");
    other.ask("offer image/png image/png 8 1000000");
    other.ask("copy");
    speakInto("line");
    insert("Grüße aus Köln");
    EXPECT_EQ(form.ask("read line"), "[Grüße aus Köln]");
    EXPECT_EQ(serve(other, "paste-text UTF8_STRING"), "theirs");
    EXPECT_EQ(serve(other, "paste image/png").substr(0, 19), "image/png 8 1000000");
}

TEST_F(InsertionOnTheDesktop, LeavesTheTextOnTheClipboardIfTheUserWantsIt)
{
    speakInto("page");
    insert("two words", Clipboard::keepsTranscript);
    EXPECT_EQ(form.ask("read page"), "[two words]");
    EXPECT_EQ(serve(other, "paste-text UTF8_STRING"), "two words");
}

TEST_F(InsertionOnTheDesktop, BringsTheFieldBackFromBehindAnotherWindow)
{
    speakInto("line");
    EXPECT_EQ(form.ask("focus page"), "done");
    other.ask("window Front");
    loop.turnUntil([&] { return isInFront(other); });
    insert("late");
    EXPECT_EQ(form.ask("read line"), "[late]");
    EXPECT_EQ(form.ask("read page"), "[]");
}

TEST_F(InsertionOnTheDesktop, RefusesAPasswordField)
{
    goTo("password");
    pressShortcut();
    EXPECT_FALSE(target);
    EXPECT_EQ(failure, InsertionError::Case::secureField);
}

TEST_F(InsertionOnTheDesktop, FindsNoFieldWhereNothingCanBeTyped)
{
    goTo("button");
    pressShortcut();
    ASSERT_TRUE(target);
    EXPECT_FALSE(target->element);
    EXPECT_THROW(insert("words"), InsertionError);
}

TEST_F(InsertionOnTheDesktop, TypesNowhereIfTheFieldIsGone)
{
    other.ask("offer-text UTF8_STRING theirs");
    other.ask("copy");
    speakInto("line");
    form.ask("remove line");
    EXPECT_THROW(insert("words"), InsertionError);
    EXPECT_EQ(form.ask("read page"), "[]");
    EXPECT_EQ(serve(other, "paste-text UTF8_STRING"), "theirs");
}

TEST_F(InsertionOnTheDesktop, IsNotHeldUpByAFrozenDestination)
{
    speakInto("line");
    form.freeze();
    EXPECT_THROW(insert("words"), InsertionError);
}

} // namespace

} // namespace Sorvane
