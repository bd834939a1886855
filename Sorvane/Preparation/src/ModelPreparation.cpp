// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <PlatformSupport/TaskContext.h>
#include <Sorvane/ModelPreparation.h>

#include <algorithm>
#include <utility>

namespace Sorvane {

using PlatformSupport::Awaitable;
using PlatformSupport::UUID;

namespace {

std::string description(const std::exception_ptr& failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& error) {
        return error.what();
    }
}

} // namespace

ModelPreparation::ModelPreparation(PlatformSupport::Executor mainThread, PlatformSupport::UUIDSource& uuids)
    : mainThread_(std::move(mainThread))
    , uuids_(uuids)
    , runID_(uuids.next())
{
}

ModelPreparation::~ModelPreparation()
{
    if (task_)
        task_->cancel();
}

void ModelPreparation::start(Step speech, Step cleanup)
{
    if (task_ || stage_.which == Stage::Case::ready)
        return;
    runID_ = uuids_.next();
    enter(Stage::Case::speech, 0);
    task_ = PlatformSupport::startTask(
        mainThread_, [weak = self_.reference(), id = runID_, speech = std::move(speech), cleanup = std::move(cleanup)] {
            return run(weak, id, speech, cleanup);
        });
    changed();
}

Awaitable<void> ModelPreparation::run(Weak weak, UUID run, Step speech, Step cleanup)
{
    std::exception_ptr failure;
    try {
        co_await runStages(weak, run, std::move(speech), std::move(cleanup));
    } catch (...) {
        failure = std::current_exception();
    }
    auto* const self = current(weak, run);
    if (!self)
        co_return;
    if (failure)
        self->fail(failure);
    self->finish();
}

Awaitable<void> ModelPreparation::runStages(Weak weak, UUID run, Step speech, Step cleanup)
{
    if (auto* const self = current(weak, run))
        co_await speech(self->progress(Stage::Case::speech, run));
    PlatformSupport::checkCancellation();
    if (auto* const self = current(weak, run)) {
        self->enter(Stage::Case::cleanup, 0);
        self->changed();
        co_await cleanup(self->progress(Stage::Case::cleanup, run));
        PlatformSupport::checkCancellation();
    }
    if (auto* const self = current(weak, run))
        self->enter(Stage::Case::ready, 1);
}

// The object, if it is still there and this run is its latest.
ModelPreparation* ModelPreparation::current(const Weak& weak, const UUID& run)
{
    auto* const self = weak.get();
    return self && self->runID_ == run ? self : nullptr;
}

ModelPreparation::Progress ModelPreparation::progress(Stage::Case stage, UUID run) const
{
    return [mainThread = mainThread_, weak = self_.reference(), stage, run](double fraction) {
        PlatformSupport::startDetachedTask(mainThread, [weak, stage, run, fraction]() -> Awaitable<void> {
            if (auto* const self = current(weak, run))
                self->report(stage, fraction);
            co_return;
        });
    };
}

void ModelPreparation::report(Stage::Case stage, double fraction)
{
    if (stage_.which != stage || !task_)
        return;
    fraction_ = std::clamp(fraction, 0.0, 1.0);
    changed();
}

void ModelPreparation::enter(Stage::Case stage, double fraction)
{
    stage_ = { stage, {} };
    fraction_ = fraction;
}

void ModelPreparation::fail(const std::exception_ptr& failure)
{
    if (task_->isCancelled()) {
        stage_ = { Stage::Case::canceled, {} };
        return;
    }
    const std::string what = stage_.which == Stage::Case::speech ? "speech recognition" : "text cleanup";
    stage_ = { Stage::Case::failed,
        "Couldn’t prepare " + what + ". " + description(failure) + " Retry when you’re ready." };
}

void ModelPreparation::finish()
{
    task_.reset();
    changed();
}

void ModelPreparation::changed()
{
    if (onChange)
        onChange();
}

std::string statusLine(const ModelPreparation::Stage& stage)
{
    using Case = ModelPreparation::Stage::Case;
    switch (stage.which) {
    case Case::idle:
        return "Download speech recognition and text cleanup once.";
    case Case::speech:
        return "Preparing speech recognition…";
    case Case::cleanup:
        return "Preparing text cleanup…";
    case Case::ready:
        return "Ready for dictation.";
    case Case::canceled:
        return "Setup paused. Resume when you’re ready.";
    case Case::failed:
        return stage.message;
    }
    PlatformSupport::fatalError("no such stage");
}

} // namespace Sorvane
