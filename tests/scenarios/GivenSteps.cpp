// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Stage.h"
#include "Steps.h"

#include <DesktopServices/AccessibilityNames.h>
#include <Sorvane/CleanupFailure.h>
#include <Sorvane/Shortcut.h>

#include <fstream>

namespace Scenarios {

namespace {

using Selection = Sorvane::OutputModeSelection;
using Status = DesktopServices::AuthorizationStatus;

std::chrono::nanoseconds seconds(const Step& step)
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(step.number(0)));
}

auto select(Selection selection)
{
    return [selection](Stage& stage, const Step&) { stage.controller->setOutputModeSelection(selection); };
}

auto allowMicrophone(Status status)
{
    return [status](Stage& stage, const Step&) { stage.desktop.permissions.microphone = status; };
}

void copy(Stage& stage, std::vector<DesktopServices::PasteboardItem> items)
{
    stage.desktop.pasteboard.copy(std::move(items));
    stage.firstChangeCount = stage.desktop.pasteboard.changeCount();
}

// A file where the folder was, so that it cannot be made again.
void loseHistoryFolder(const Stage& stage)
{
    std::filesystem::remove_all(stage.folder / "Transcripts");
    std::ofstream(stage.folder / "Transcripts") << "in the way";
}

// A folder where the file was, so that it cannot be replaced.
void loseStatistics(const Stage& stage)
{
    const auto path = stage.folder / "Transcripts" / ".lifetime-statistics.json";
    std::filesystem::remove(path);
    std::filesystem::create_directories(path / "in the way");
}

auto storeFlag(bool value)
{
    return [value](Stage& stage, const Step& step) { stage.defaults.setBoolean(step.text(0), value); };
}

Steps givenSettings()
{
    return {
        { "GIVEN mode hold",
            [](Stage& stage, const Step&) { stage.controller->setMode(Sorvane::ActivationMode::hold); } },
        { "GIVEN mode toggle",
            [](Stage& stage, const Step&) { stage.controller->setMode(Sorvane::ActivationMode::toggle); } },
        { "GIVEN preview on", [](Stage& stage, const Step&) { stage.controller->setPreviewBeforeInsert(true); } },
        { "GIVEN automatic-copying off",
            [](Stage& stage, const Step&) { stage.controller->setAutomaticallyCopy(false); } },
        { "GIVEN output auto", select(Selection::automatic) },
        { "GIVEN output email", select(Selection::email) },
        { "GIVEN output raw", select(Selection::raw) },
        { "GIVEN stored setting",
            [](Stage& stage, const Step& step) { stage.defaults.setString(step.text(0), step.text(1)); } },
        { "GIVEN stored setting on", storeFlag(true) },
        { "GIVEN stored setting off", storeFlag(false) },
        { "GIVEN onboarding shown", [](Stage& stage, const Step&) { stage.controller->onboardingVisible = true; } },
        { "GIVEN shortcut-taken",
            [](Stage& stage, const Step& step) {
                stage.desktop.hotKey.heldByOthers.push_back(keyChord(Sorvane::shortcut(step.text(0)).value()));
            } },
    };
}

Steps givenPermissions()
{
    return {
        { "GIVEN microphone-permission denied", allowMicrophone(Status::denied) },
        { "GIVEN microphone-permission granted", allowMicrophone(Status::authorized) },
        { "GIVEN microphone-permission undetermined", allowMicrophone(Status::notDetermined) },
        { "GIVEN microphone-answer no", [](Stage& stage, const Step&) { stage.microphoneAnswer = false; } },
        { "GIVEN accessibility-permission denied",
            [](Stage& stage, const Step&) { stage.desktop.permissions.accessibility = false; } },
    };
}

Steps givenMachinery()
{
    return {
        { "GIVEN models not-prepared", [](Stage&, const Step&) {} }, // seen to before the story begins
        { "GIVEN real-parts",
            [](Stage& stage, const Step&) { stage.real = std::make_unique<RealParts>(stage.folder / "Cleanup"); } },
        { "GIVEN engine hears", [](Stage& stage, const Step& step) { stage.engine->words = step.text(0); } },
        { "GIVEN engine fails", [](Stage& stage, const Step& step) { stage.engine->failure = step.text(0); } },
        { "GIVEN engine takes s", [](Stage& stage, const Step& step) { stage.engine->takes = seconds(step); } },
        { "GIVEN cleanup answers", [](Stage& stage, const Step& step) { stage.cleanup.answer = step.text(0); } },
        { "GIVEN cleanup answers-raw", [](Stage& stage, const Step& step) { stage.cleanup.output = step.text(0); } },
        { "GIVEN cleanup takes s", [](Stage& stage, const Step& step) { stage.cleanup.takes = seconds(step); } },
        { "GIVEN cleanup fails",
            [](Stage& stage, const Step&) {
                stage.cleanup.failure
                    = std::make_exception_ptr(Sorvane::CleanupFailure(Sorvane::CleanupFailure::Case::processFailed));
            } },
        { "GIVEN cleanup too-long",
            [](Stage& stage, const Step&) {
                stage.cleanup.failure
                    = std::make_exception_ptr(Sorvane::CleanupFailure(Sorvane::CleanupFailure::Case::inputTooLong));
            } },
        { "GIVEN speech-preparation fails",
            [](Stage& stage, const Step& step) { stage.speechPreparationFailure = step.text(0); } },
        { "GIVEN cleanup-preparation fails",
            [](Stage& stage, const Step& step) { stage.cleanupPreparationFailure = step.text(0); } },
        { "GIVEN cleanup-preparation works",
            [](Stage& stage, const Step&) { stage.cleanupPreparationFailure.reset(); } },
        { "GIVEN history-folder removed", [](Stage& stage, const Step&) { loseHistoryFolder(stage); } },
        { "GIVEN statistics-file blocked", [](Stage& stage, const Step&) { loseStatistics(stage); } },
        { "GIVEN microphone fails",
            [](Stage& stage, const Step& step) {
                stage.microphone.failNextStart(DesktopServices::MicrophoneError(step.text(0)));
            } },
        { "GIVEN microphone absent", [](Stage& stage, const Step&) { stage.microphone.unplug(); } },
        { "GIVEN microphone unplugged", [](Stage& stage, const Step&) { stage.microphone.unplug(); } },
        { "GIVEN microphone changes-format",
            [](Stage& stage, const Step&) {
                const std::vector<float> silence(2048);
                stage.microphone.play({ { .sampleRate = 48'000, .channels = 2 }, silence });
            } },
    };
}

Steps givenDesktop()
{
    return {
        { "GIVEN clipboard",
            [](Stage& stage, const Step& step) {
                const auto text = DesktopFakes::representation(DesktopServices::pasteboardStringType, step.text(0));
                copy(stage, { { { text } } });
            } },
        { "GIVEN clipboard-item",
            [](Stage& stage, const Step& step) {
                DesktopServices::PasteboardItem item;
                for (size_t i = 0; i + 1 < step.arguments.size(); i += 2)
                    item.representations.push_back(DesktopFakes::representation(step.text(i), step.text(i + 1)));
                copy(stage, { item });
            } },
        { "GIVEN clipboard broken", [](Stage& stage, const Step&) { stage.desktop.pasteboard.failEverySetString(); } },
        { "GIVEN clipboard fails-once",
            [](Stage& stage, const Step&) { stage.desktop.pasteboard.failNextSetString(); } },
        { "GIVEN modifier-keys held",
            [](Stage& stage, const Step&) { stage.desktop.keyEvents.modifiersAreHeld = true; } },
        { "GIVEN field secure",
            [](Stage& stage, const Step& step) {
                stage.field(step.text(0)).answer(DesktopServices::AccessibilityAttribute::subrole, "AXSecureTextField");
            } },
        { "GIVEN field disabled", [](Stage& stage, const Step& step) { stage.field(step.text(0)).disable(); } },
        { "GIVEN field refuses-focus",
            [](Stage& stage, const Step& step) { stage.field(step.text(0)).refuseFocus(); } },
        { "GIVEN application nameless",
            [](Stage& stage, const Step& step) { stage.application(step.text(0)).becomeAnother({}); } },
        { "GIVEN application frozen",
            [](Stage& stage, const Step& step) { stage.application(step.text(0)).freeze(); } },
        { "GIVEN application refuses-activation",
            [](Stage& stage, const Step& step) { stage.application(step.text(0)).ignoreActivation(); } },
        { "GIVEN page in", [](Stage& stage, const Step& step) { stage.addPage(step.text(0), step.text(1)); } },
        { "GIVEN window-title in",
            [](Stage& stage, const Step& step) {
                stage.application(step.text(1)).focusedWindow()->retitle(step.text(0));
            } },
    };
}

} // namespace

Steps givenSteps()
{
    Steps steps = givenSettings();
    steps.merge(givenPermissions());
    steps.merge(givenMachinery());
    steps.merge(givenDesktop());
    return steps;
}

} // namespace Scenarios
