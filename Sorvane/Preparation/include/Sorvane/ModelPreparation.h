// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/Task.h>
#include <PlatformSupport/UUID.h>
#include <PlatformSupport/WeakSelf.h>
#include <Sorvane/PreparationProgress.h>

#include <exception>
#include <functional>
#include <optional>
#include <string>

namespace Sorvane {

// Gets the two things ready that a first dictation needs, one after the other: speech recognition and text cleanup.
// What each takes is the caller's to say; this keeps where it stands, and what to tell the user.
//
// Main thread, but for the progress callbacks, which may be called on any.
class ModelPreparation {
public:
    struct Stage {
        enum class Case { failed, idle, speech, cleanup, ready, canceled };
        Case which = Case::idle;
        std::string message; // of a failure, for the user
        bool operator==(const Stage&) const = default;
    };

    // Told how much of the stage is done. Late calls do no harm.
    using Progress = PreparationProgress;

    // One of the two stages. Throws what went wrong, with words for the user.
    using Step = std::function<PlatformSupport::Awaitable<void>(Progress)>;

    ModelPreparation(PlatformSupport::Executor mainThread, PlatformSupport::UUIDSource& uuids);
    ModelPreparation(const ModelPreparation&) = delete;
    ModelPreparation& operator=(const ModelPreparation&) = delete;
    ~ModelPreparation();

    const Stage& stage() const { return stage_; }
    double fraction() const { return fraction_; } // of the stage

    // The run in flight: it may be cancelled, and the state follows. Nothing when none is.
    const std::optional<PlatformSupport::Task<>>& task() const { return task_; }

    // Begins a run of both stages, unless one is in flight or all is ready.
    void start(Step speech, Step cleanup);

    std::function<void()> onChange; // called after every change that the owner should mirror

private:
    using Weak = PlatformSupport::WeakReference<ModelPreparation>;

    static PlatformSupport::Awaitable<void> run(Weak weak, PlatformSupport::UUID run, Step speech, Step cleanup);
    static PlatformSupport::Awaitable<void> runStages(Weak weak, PlatformSupport::UUID run, Step speech, Step cleanup);
    static ModelPreparation* current(const Weak& weak, const PlatformSupport::UUID& run);

    Progress progress(Stage::Case stage, PlatformSupport::UUID run) const;
    void report(Stage::Case stage, double fraction);
    void enter(Stage::Case stage, double fraction);
    void fail(const std::exception_ptr& failure);
    void finish();
    void changed();

    PlatformSupport::Executor mainThread_;
    PlatformSupport::UUIDSource& uuids_;
    Stage stage_;
    double fraction_ = 0;
    std::optional<PlatformSupport::Task<>> task_;
    PlatformSupport::UUID runID_;
    PlatformSupport::WeakSelf<ModelPreparation> self_ { this };
};

// What the user reads while a preparation is at this stage.
std::string statusLine(const ModelPreparation::Stage& stage);

} // namespace Sorvane
