// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Stage.h"
#include "Steps.h"

#include <Sorvane/Shortcut.h>

namespace Scenarios {

namespace {

// So many bytes of words.
std::string longText(size_t bytes)
{
    std::string text;
    while (text.size() < bytes)
        text += "word ";
    text.resize(bytes - 1);
    return text + ".";
}

std::chrono::nanoseconds duration(double seconds)
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds));
}

} // namespace

Steps userSteps()
{
    return {
        { "PRESS shortcut", [](Stage& stage, const Step&) { stage.desktop.hotKey.press(); } },
        { "RELEASE shortcut", [](Stage& stage, const Step&) { stage.desktop.hotKey.release(); } },
        { "CLICK record", [](Stage& stage, const Step&) { stage.controller->toggleFromButton(); } },
        { "PAUSE", [](Stage& stage, const Step&) { stage.controller->pause(); } },
        { "TOGGLE pause", [](Stage& stage, const Step&) { stage.controller->togglePause(); } },
        { "RESUME", [](Stage& stage, const Step&) { stage.controller->resume(); } },
        { "CANCEL", [](Stage& stage, const Step&) { stage.controller->cancel(); } },
        { "CANCEL preparation", [](Stage& stage, const Step&) { stage.controller->preparation().task()->cancel(); } },
        { "QUIT", [](Stage& stage, const Step&) { stage.controller->shutdown(); } },
        { "RESTART", [](Stage& stage, const Step&) { stage.restart(); } },
        { "PREPARE models", [](Stage& stage, const Step&) { stage.controller->prepareModel(); } },
        { "PASS s", [](Stage& stage, const Step& step) { stage.pass(duration(step.number(0))); } },
        { "PASS ms", [](Stage& stage, const Step& step) { stage.pass(duration(step.number(0) / 1000)); } },
        { "SPEAK FOR s", [](Stage& stage, const Step& step) { stage.speak(step.text(0), step.number(1)); } },
        { "SPEAK LONG FOR s",
            [](Stage& stage, const Step& step) {
                stage.speak(longText(static_cast<size_t>(step.number(0))), step.number(1));
            } },
        { "SPEAK samples",
            [](Stage& stage, const Step& step) { stage.speakSamples(static_cast<size_t>(step.number(0))); } },
        { "SPEAK recording", [](Stage& stage, const Step& step) { stage.speakRecording(step.text(0)); } },
        { "WAIT", [](Stage& stage, const Step&) { stage.waitUntilFinished(); } },
        { "DELETE transcripts",
            [](Stage& stage, const Step&) {
                auto& history = stage.controller->history();
                history.deleteEntries({ history.entries().begin(), history.entries().end() });
            } },
        { "COPY", [](Stage& stage, const Step& step) { stage.desktop.pasteboard.copy(step.text(0)); } },
        { "ACTIVATE",
            [](Stage& stage, const Step& step) { stage.desktop.bringToFront(stage.application(step.text(0))); } },
        { "ACTIVATE own-application",
            [](Stage& stage, const Step&) { stage.desktop.bringToFront(stage.desktop.sorvane()); } },
        { "TERMINATE", [](Stage& stage, const Step& step) { stage.application(step.text(0)).quit(); } },
        { "FOCUS field in",
            [](Stage& stage, const Step& step) { stage.desktop.clickInto(stage.field(step.text(0))); } },
        { "FOCUS nothing in",
            [](Stage& stage, const Step& step) { stage.application(step.text(0)).openWindow("Empty"); } },
        { "CHOOSE shortcut",
            [](Stage& stage, const Step& step) {
                stage.controller->setShortcut(Sorvane::shortcut(step.text(0)).value());
            } },
        { "REQUEST microphone",
            [](Stage& stage, const Step&) {
                stage.controller->requestMicrophone();
                stage.loop.turn();
                stage.desktop.permissions.answerMicrophone(stage.microphoneAnswer);
            } },
        { "REQUEST onboarding-microphone",
            [](Stage& stage, const Step&) {
                stage.controller->requestOnboardingMicrophone();
                stage.loop.turn();
                stage.desktop.permissions.answerMicrophone(stage.microphoneAnswer);
            } },
        { "REQUEST accessibility", [](Stage& stage, const Step&) { stage.controller->requestAccessibility(); } },
    };
}

} // namespace Scenarios
