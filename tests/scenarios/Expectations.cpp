// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Stage.h"
#include "Steps.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace Scenarios {

namespace {

using Notice = Sorvane::CompletionFeedback::State;
using Phase = Sorvane::DictationPhase;

const Sorvane::TranscriptEntry& newest(Stage& stage)
{
    return stage.controller->history().entries().at(0);
}

auto expectPhase(Phase phase)
{
    return [phase](Stage& stage, const Step&) { EXPECT_EQ(stage.controller->phase(), phase); };
}

// The notice's state and, where the story gives them, its words.
auto expectNotice(Notice state)
{
    return [state](Stage& stage, const Step& step) {
        EXPECT_EQ(stage.controller->completion().state(), state);
        if (!step.arguments.empty()) {
            EXPECT_EQ(stage.controller->completion().confirmationText(), step.text(0));
        }
    };
}

auto expectContext(Sorvane::TranscriptCleanup::Context context)
{
    return [context](Stage& stage, const Step&) { EXPECT_EQ(stage.cleanup.context, context); };
}

Steps expectedState()
{
    return {
        { "EXPECT phase idle", expectPhase(Phase::idle) },
        { "EXPECT phase preparing", expectPhase(Phase::preparing) },
        { "EXPECT phase recording", expectPhase(Phase::recording) },
        { "EXPECT phase paused", expectPhase(Phase::paused) },
        { "EXPECT phase transcribing", expectPhase(Phase::transcribing) },
        { "EXPECT status",
            [](Stage& stage, const Step& step) { EXPECT_EQ(stage.controller->status(), step.text(0)); } },
        { "EXPECT notice hidden", expectNotice(Notice::hidden) },
        { "EXPECT notice confirmation", expectNotice(Notice::confirmation) },
        { "EXPECT notice review", expectNotice(Notice::review) },
        { "EXPECT transcript",
            [](Stage& stage, const Step& step) { EXPECT_EQ(stage.controller->transcript(), step.text(0)); } },
        { "EXPECT elapsed",
            [](Stage& stage, const Step& step) { EXPECT_EQ(stage.controller->elapsed(), step.number(0)); } },
        { "EXPECT level zero", [](Stage& stage, const Step&) { EXPECT_EQ(stage.controller->level(), 0); } },
        { "EXPECT level raised", [](Stage& stage, const Step&) { EXPECT_GT(stage.controller->level(), 0.5); } },
        { "EXPECT target",
            [](Stage& stage, const Step& step) { EXPECT_EQ(stage.controller->targetName(), step.text(0)); } },
        { "EXPECT harness",
            [](Stage& stage, const Step& step) {
                EXPECT_EQ(stage.controller->targetHarness(), Sorvane::codingHarness(step.text(0)));
            } },
        { "EXPECT output clean",
            [](Stage& stage, const Step&) {
                EXPECT_EQ(stage.controller->outputMode(), Sorvane::TranscriptMode::clean);
            } },
        { "EXPECT output raw",
            [](Stage& stage, const Step&) {
                EXPECT_EQ(stage.controller->outputMode(), Sorvane::TranscriptMode::raw);
            } },
        { "EXPECT output email",
            [](Stage& stage, const Step&) {
                EXPECT_EQ(stage.controller->outputMode(), Sorvane::TranscriptMode::email);
            } },
        { "EXPECT microphone-permission granted",
            [](Stage& stage, const Step&) { EXPECT_TRUE(stage.controller->microphoneAllowed()); } },
        { "EXPECT microphone-permission denied",
            [](Stage& stage, const Step&) {
                EXPECT_FALSE(stage.controller->microphoneAllowed());
                EXPECT_TRUE(stage.controller->microphoneDenied());
            } },
        { "EXPECT window shown", [](Stage& stage, const Step&) { EXPECT_GT(stage.windowsShown, 0U); } },
        { "EXPECT window closed", [](Stage& stage, const Step&) { EXPECT_EQ(stage.windowsShown, 0U); } },
        { "EXPECT onboarding open",
            [](Stage& stage, const Step&) { EXPECT_TRUE(stage.controller->onboardingVisible); } },
        { "EXPECT onboarding closed",
            [](Stage& stage, const Step&) { EXPECT_FALSE(stage.controller->onboardingVisible); } },
    };
}

Steps expectedTranscripts()
{
    return {
        { "EXPECT stored",
            [](Stage& stage, const Step& step) {
                EXPECT_EQ(stage.controller->history().entries().size(), static_cast<size_t>(step.number(0)));
            } },
        { "EXPECT stored text", [](Stage& stage, const Step& step) { EXPECT_EQ(newest(stage).text, step.text(0)); } },
        { "EXPECT stored raw-text",
            [](Stage& stage, const Step& step) { EXPECT_EQ(newest(stage).rawText, step.text(0)); } },
        { "EXPECT stored raw-text none",
            [](Stage& stage, const Step&) { EXPECT_EQ(newest(stage).rawText, std::nullopt); } },
        { "EXPECT stored duration",
            [](Stage& stage, const Step& step) { EXPECT_EQ(newest(stage).duration, step.number(0)); } },
        { "EXPECT stored app", [](Stage& stage, const Step& step) { EXPECT_EQ(newest(stage).appName, step.text(0)); } },
        { "EXPECT stored harness",
            [](Stage& stage, const Step& step) {
                EXPECT_EQ(newest(stage).harness, Sorvane::codingHarness(step.text(0)));
            } },
        { "EXPECT history-error",
            [](Stage& stage, const Step& step) {
                EXPECT_EQ(stage.controller->history().errorMessage(), step.text(0));
            } },
    };
}

Steps expectedDesktop()
{
    return {
        { "EXPECT field",
            [](Stage& stage, const Step& step) { EXPECT_EQ(stage.field(step.text(0)).text(), step.text(1)); } },
        { "EXPECT front",
            [](Stage& stage, const Step& step) {
                EXPECT_EQ(stage.desktop.workspace.frontmostApplication()->localizedName(), step.text(0));
            } },
        { "EXPECT clipboard",
            [](Stage& stage, const Step& step) { EXPECT_EQ(stage.desktop.pasteboard.string(), step.text(0)); } },
        { "EXPECT clipboard empty",
            [](Stage& stage, const Step&) { EXPECT_TRUE(stage.desktop.pasteboard.contents().empty()); } },
        { "EXPECT clipboard-item",
            [](Stage& stage, const Step& step) {
                DesktopServices::PasteboardItem item;
                for (size_t i = 0; i + 1 < step.arguments.size(); i += 2)
                    item.representations.push_back(DesktopFakes::representation(step.text(i), step.text(i + 1)));
                EXPECT_EQ(stage.desktop.pasteboard.contents(), std::vector { item });
            } },
        { "EXPECT clipboard-changes",
            [](Stage& stage, const Step& step) {
                EXPECT_EQ(static_cast<double>(stage.desktop.pasteboard.changeCount() - stage.firstChangeCount),
                    step.number(0));
            } },
        { "EXPECT log",
            [](Stage& stage, const Step& step) {
                const auto isIt = [&](const auto& entry) { return entry.text == step.text(0); };
                EXPECT_TRUE(std::ranges::any_of(stage.desktop.diagnosticLog.entries, isIt)) << step.text(0);
            } },
        { "EXPECT opened",
            [](Stage& stage, const Step& step) {
                EXPECT_EQ(stage.desktop.launching.opened, std::vector { step.text(0) });
            } },
        { "EXPECT opened nothing",
            [](Stage& stage, const Step&) { EXPECT_TRUE(stage.desktop.launching.opened.empty()); } },
        { "EXPECT accessibility-prompts",
            [](Stage& stage, const Step& step) {
                EXPECT_EQ(stage.desktop.permissions.accessibilityPrompts, static_cast<size_t>(step.number(0)));
            } },
        { "EXPECT shortcut registered",
            [](Stage& stage, const Step&) { EXPECT_TRUE(stage.desktop.hotKey.chord().has_value()); } },
        { "EXPECT shortcut unregistered",
            [](Stage& stage, const Step&) { EXPECT_FALSE(stage.desktop.hotKey.chord().has_value()); } },
    };
}

Steps expectedMachinery()
{
    return {
        { "EXPECT microphone off", [](Stage& stage, const Step&) { EXPECT_FALSE(stage.microphone.isRunning()); } },
        { "EXPECT microphone-starts",
            [](Stage& stage, const Step& step) {
                EXPECT_EQ(stage.microphone.enginesMade(), static_cast<size_t>(step.number(0)));
            } },
        { "EXPECT engine-calls",
            [](Stage& stage, const Step& step) {
                EXPECT_EQ(stage.engine->calls, static_cast<size_t>(step.number(0)));
            } },
        { "EXPECT cleanup-calls",
            [](Stage& stage, const Step& step) {
                EXPECT_EQ(stage.cleanup.calls, static_cast<size_t>(step.number(0)));
            } },
        { "EXPECT cleanup-context email", expectContext(Sorvane::TranscriptCleanup::Context::email) },
        { "EXPECT cleanup-context general", expectContext(Sorvane::TranscriptCleanup::Context::general) },
        { "EXPECT speech-loads",
            [](Stage& stage, const Step& step) { EXPECT_EQ(stage.speechLoads, static_cast<size_t>(step.number(0))); } },
    };
}

} // namespace

Steps expectations()
{
    Steps steps = expectedState();
    steps.merge(expectedTranscripts());
    steps.merge(expectedDesktop());
    steps.merge(expectedMachinery());
    return steps;
}

} // namespace Scenarios
