// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Finishing.h"

#include <PlatformSupport/TaskContext.h>
#include <Sorvane/DictationRules.h>

#include <exception>
#include <utility>
#include <variant>

namespace Sorvane {

using PlatformSupport::Awaitable;

namespace {

constexpr size_t fewestSamples = 4000; // a quarter of a second

} // namespace

void DictationController::Finishing::begin(DictationController& controller)
{
    if (controller.meterTask_)
        controller.meterTask_->cancel();
    controller.enter(DictationPhase::transcribing);
    controller.set(controller.status_, "Finishing your transcript…");
    std::vector<float> samples;
    try {
        samples = controller.audio_.stop();
    } catch (const std::exception& error) {
        return controller.complete(error.what());
    }
    controller.set(controller.elapsed_, static_cast<double>(samples.size()) / AudioRecorder::sampleRate);
    if (samples.size() < fewestSamples)
        return controller.complete("Recording was too short. Hold for a little longer.");
    const auto finishing = std::shared_ptr<Finishing>(new Finishing(controller, std::move(samples)));
    const auto work = [finishing] { return finishing->run(); };
    controller.finishTask_ = PlatformSupport::startTask(controller.services_.mainThread, work);
}

DictationController::Finishing::Finishing(DictationController& controller, std::vector<float> samples)
    : controller_(controller.self_.reference())
    , session_(controller.session_)
    , engine_(controller.model_)
    , cleanup_(controller.services_.cleanup)
    , samples_(std::move(samples))
    , duration_(static_cast<double>(samples_.size()) / AudioRecorder::sampleRate)
    , target_(controller.target_)
    , mode_(controller.outputMode_)
    , wishes_ { .automaticallyCopy = controller.settings_.automaticallyCopy,
        .reviewRequested = controller.settings_.previewBeforeInsert }
{
}

// The controller, as long as this is its dictation.
DictationController* DictationController::Finishing::currentController() const
{
    auto* const controller = controller_.get();
    const bool isCurrent = controller && controller->session_ == session_ && !PlatformSupport::isCancelled();
    return isCurrent ? controller : nullptr;
}

DictationController& DictationController::Finishing::controller() const
{
    if (auto* const controller = currentController())
        return *controller;
    throw Outdated();
}

Awaitable<void> DictationController::Finishing::run()
{
    try {
        co_await finish();
    } catch (const Outdated&) {
    } catch (const std::exception& error) {
        if (auto* const controller = currentController())
            controller->fail(error.what());
    }
}

Awaitable<void> DictationController::Finishing::finish()
{
    const std::string heard = co_await engine_->transcribe(std::move(samples_));
    const auto text = DictationRules::usableTranscript(heard);
    if (!text)
        co_return controller().complete("No speech detected. Try speaking closer to the microphone.");
    store(*text);
    const auto note = co_await cleanUp();
    if (!DictationRules::usableTranscript(controller().transcript_)) {
        controller().complete("Only speech fillers detected. Nothing inserted.");
        co_return controller().completion_.show({ .saved = controller().savedToHistory_ });
    }
    conclude(co_await deliver(), note);
}

void DictationController::Finishing::store(const std::string& text)
{
    auto& dictation = controller();
    dictation.set(dictation.transcript_, text);
    try {
        entry_ = dictation.history_.save({
            .text = text,
            .appName = target_ ? target_->name : dictation.targetName_,
            .bundleIdentifier = target_ ? target_->bundleIdentifier : std::nullopt,
            .createdAt = dictation.startedAt_,
            .duration = duration_,
            .harness = target_ ? target_->harness : std::nullopt,
        });
    } catch (const std::exception&) {
        dictation.history_.setErrorMessage("This transcript could not be saved. Copy it before closing Sorvane.");
    }
    dictation.set(dictation.savedToHistory_, entry_.has_value());
}

// Gives what the cleanup has to say about a text that it left alone. A transcript that could not be stored is not
// touched.
Awaitable<std::optional<std::string>> DictationController::Finishing::cleanUp()
{
    if (mode_ == TranscriptMode::raw || !entry_)
        co_return std::nullopt;
    auto& dictation = controller();
    dictation.set(dictation.status_, "Cleaning up dictation…");
    const auto context
        = mode_ == TranscriptMode::email ? TranscriptCleanup::Context::email : TranscriptCleanup::Context::general;
    const auto result = co_await cleanup_.clean(entry_->text, TranscriptCleanup::Enabled::yes, context);
    controller();
    if (!result.usedOriginal)
        applyCleanup(result.text);
    co_return result.message;
}

void DictationController::Finishing::applyCleanup(const std::string& text)
{
    auto& dictation = controller();
    try {
        dictation.history_.applyCleanup(text, entry_->id);
        dictation.set(dictation.transcript_, text);
    } catch (const std::exception&) {
        // The transcript stays as it was stored; the user gets just that.
    }
}

Awaitable<TranscriptDelivery::Result> DictationController::Finishing::deliver()
{
    auto& dictation = controller();
    const TranscriptDelivery delivery([&pasteboard = dictation.services_.desktop.pasteboard](const std::string& text) {
        pasteboard.clearContents();
        return pasteboard.setString(text, DesktopServices::pasteboardStringType);
    });
    co_return co_await delivery.deliver(dictation.transcript_, wishes_, insertion());
}

// Nothing, where the text is not to go into a field.
TranscriptDelivery::Insert DictationController::Finishing::insertion() const
{
    if (wishes_.reviewRequested || !target_ || !target_->element)
        return {};
    return [insertion = controller().insertion_, text = controller().transcript_, target = *target_](
               bool keepTranscriptOnClipboard) {
        using Clipboard = TextInsertion::Clipboard;
        return insertion->insert(
            text, target, keepTranscriptOnClipboard ? Clipboard::keepsTranscript : Clipboard::restored);
    };
}

void DictationController::Finishing::conclude(
    const TranscriptDelivery::Result& result, const std::optional<std::string>& note)
{
    auto& dictation = controller();
    const bool inserted = std::holds_alternative<TranscriptDelivery::Inserted>(result);
    const bool copied = std::holds_alternative<TranscriptDelivery::Copied>(result);
    std::string message;
    if (inserted)
        message = "Inserted in " + (target_ ? target_->name : "your app") + ".";
    else if (copied)
        message = "Copied to clipboard. Paste it wherever you need.";
    else
        message = std::get<TranscriptDelivery::Message>(result).text;
    dictation.complete(note ? message + " " + *note : message);
    dictation.completion_.show({ .saved = dictation.savedToHistory_,
        .inserted = inserted,
        .copied = copied,
        .reviewRequested = wishes_.reviewRequested });
}

// What was recognized stays within reach.
void DictationController::fail(const std::string& description)
{
    complete(description);
    if (transcript_.empty())
        show();
    else
        completion_.showReview();
}

} // namespace Sorvane
