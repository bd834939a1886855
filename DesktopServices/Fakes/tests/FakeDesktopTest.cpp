// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "DesktopTest.h"

#include <PlatformSupport/Task.h>

#include <vector>

namespace DesktopFakes {
namespace {

using DesktopServices::AuthorizationStatus;
using DesktopServices::HotKeyEvent;
using DesktopServices::KeyChord;
using DesktopServices::RunningApplication;
using PlatformSupport::Awaitable;

TEST_F(DesktopTest, BringsALaunchedProgramToTheFront)
{
    EXPECT_EQ(desktop_.workspace.frontmostApplication().get(), &editor_);
    desktop_.leaveAll();
    EXPECT_EQ(desktop_.workspace.frontmostApplication(), nullptr);
}

TEST_F(DesktopTest, IsOneOfItsOwnPrograms)
{
    desktop_.bringToFront(desktop_.sorvane());
    EXPECT_EQ(
        desktop_.workspace.frontmostApplication()->processIdentifier(), desktop_.workspace.ownProcessIdentifier());
}

TEST_F(DesktopTest, TellsOfEachProgramThatComesToTheFront)
{
    std::vector<std::string> came;
    auto subscription
        = desktop_.workspace.observeActivation([&](const std::shared_ptr<RunningApplication>& application) {
              came.push_back(application->localizedName().value());
          });
    desktop_.launch({ .name = "Mail" });
    desktop_.bringToFront(editor_);
    desktop_.bringToFront(editor_);
    subscription.reset();
    desktop_.bringToFront(desktop_.sorvane());
    EXPECT_EQ(came, (std::vector<std::string> { "Mail", "Editor" }));
}

TEST_F(DesktopTest, GivesTheShortcutToItsHandler)
{
    std::vector<HotKeyEvent> events;
    desktop_.hotKey.setHandler([&](HotKeyEvent event) { events.push_back(event); });
    desktop_.hotKey.press();
    ASSERT_TRUE(desktop_.hotKey.registerChord({ 49, DesktopServices::HotKeyModifier::option }));
    desktop_.hotKey.press();
    desktop_.hotKey.release();
    EXPECT_EQ(events, (std::vector { HotKeyEvent::pressed, HotKeyEvent::released }));
}

TEST_F(DesktopTest, RefusesAShortcutThatAnotherHolds)
{
    const KeyChord chord { 2, 768 };
    desktop_.hotKey.heldByOthers = { chord };
    EXPECT_FALSE(desktop_.hotKey.registerChord(chord));
    EXPECT_EQ(desktop_.hotKey.chord(), std::nullopt);
    EXPECT_TRUE(desktop_.hotKey.registerChord({ 49, 2048 }));
    desktop_.hotKey.unregister();
    EXPECT_EQ(desktop_.hotKey.chord(), std::nullopt);
}

TEST_F(DesktopTest, LetsTheUserAnswerForTheMicrophone)
{
    desktop_.permissions.microphone = AuthorizationStatus::notDetermined;
    const auto ask = [this]() -> Awaitable<bool> { return desktop_.permissions.requestMicrophoneAccess(); };
    const auto first = PlatformSupport::startTask(loop_.executor(), ask);
    loop_.turn();
    EXPECT_EQ(desktop_.permissions.openMicrophoneQuestions(), 1U);
    EXPECT_FALSE(first.isFinished());
    desktop_.permissions.answerMicrophone(false);
    EXPECT_FALSE(loop_.finish(first));
    EXPECT_EQ(desktop_.permissions.microphoneStatus(), AuthorizationStatus::denied);
    EXPECT_FALSE(loop_.finish(PlatformSupport::startTask(loop_.executor(), ask)));
    EXPECT_EQ(desktop_.permissions.openMicrophoneQuestions(), 0U);
}

TEST_F(DesktopTest, RemembersWhatItWasAskedToOpenAndToLog)
{
    const auto services = desktop_.services();
    EXPECT_TRUE(services.launching.open("https://example.org"));
    services.diagnosticLog.error({ "a", "b" }, "c");
    EXPECT_EQ(desktop_.launching.opened, (std::vector<std::string> { "https://example.org" }));
    EXPECT_EQ(desktop_.diagnosticLog.entries, (std::vector<FakeDiagnosticLog::Entry> { { "a", "b", "c" } }));
}

TEST_F(DesktopTest, GivesTheClipboardAfterSomeTimeAsItWasAtFirst)
{
    desktop_.pasteboard.copy("apples");
    desktop_.pasteboard.takeTimeToRead(100ms);
    const auto read
        = [this]() -> Awaitable<std::vector<DesktopServices::PasteboardItem>> { return desktop_.pasteboard.items(); };
    const auto items = PlatformSupport::startTask(loop_.executor(), read);
    loop_.turn();
    desktop_.pasteboard.copy("pears");
    clock_.advance(100ms);
    EXPECT_EQ(loop_.finish(items).at(0).representations.at(0),
        representation(DesktopServices::pasteboardStringType, "apples"));
    EXPECT_EQ(desktop_.pasteboard.string(), "pears");
}

} // namespace
} // namespace DesktopFakes
