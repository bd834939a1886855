// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "SessionOnTheDesktop.h"

namespace Sorvane {

using PlatformSupport::Awaitable;
namespace KeySymbols = DesktopLinux::KeySymbols;

SessionOnTheDesktop::SessionOnTheDesktop()
{
    defaults.setString("outputModeSelection", "raw");
}

void SessionOnTheDesktop::open()
{
    controller = std::make_unique<DictationController>(services());
    controller->showWindow = [this] { ++windowsShown; };
    controller->prepareModel();
    desktop.loop.turnUntil([this] { return controller->modelReady() && controller->phase() == DictationPhase::idle; });
}

void SessionOnTheDesktop::untilStatusIs(const std::string& status)
{
    desktop.loop.turnUntil([&] { return controller->status() == status; });
}

void SessionOnTheDesktop::untilReady()
{
    while (!controller->microphoneAllowed() || !controller->accessibilityAllowed()) {
        desktop.loop.turn();
        controller->refreshPermissions();
    }
}

DictationServices SessionOnTheDesktop::services()
{
    return {
        .mainThread = desktop.loop.executor(),
        .clock = desktop.clock,
        .uuids = uuids_,
        .defaults = defaults,
        .desktop = desktop.services(),
        .microphone = desktop.sound.microphone(),
        .historyDirectory = folder_ / "Transcripts",
        .cleanup = TranscriptCleanup(
            [](const std::string& text, TranscriptCleanup::Context) -> Awaitable<std::string> { co_return text; },
            tagger_),
        .loadSpeech = [this](const auto&) -> Awaitable<std::shared_ptr<SpeechEngine>> { co_return engine; },
        .prepareCleanup = [](const auto&) -> Awaitable<void> { co_return; },
    };
}

void SessionOnTheDesktop::pressShortcut()
{
    desktop.press({ KeySymbols::alt, KeySymbols::space });
    desktop.release({ KeySymbols::space, KeySymbols::alt });
}

void SessionOnTheDesktop::begin()
{
    pressShortcut();
    desktop.loop.turnUntil([this] { return controller->phase() == DictationPhase::recording; });
}

void SessionOnTheDesktop::end()
{
    pressShortcut();
    desktop.loop.turnUntil([this] { return controller->phase() == DictationPhase::idle; });
}

void SessionOnTheDesktop::untilCaptured(double seconds)
{
    desktop.loop.turnUntil(
        [this, wanted = controller->elapsed() + seconds] { return controller->elapsed() >= wanted; });
}

void SessionOnTheDesktop::expectDictation(const std::string& field)
{
    desktop.goTo(field);
    begin();
    untilCaptured(0.3);
    end();
    expectWordsIn(field);
}

void SessionOnTheDesktop::expectWordsIn(const std::string& field)
{
    ASSERT_TRUE(controller->status().starts_with("Inserted in ")) << controller->status();
    std::string text = "[]";
    while (text == "[]") // a program may take its time
        text = desktop.serve(desktop.form, "read " + field);
    EXPECT_EQ(text, "[spoken words]");
}

} // namespace Sorvane
