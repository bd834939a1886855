// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/Clock.h>
#include <PlatformSupport/Task.h>
#include <PlatformSupport/WeakSelf.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace Sorvane {

// The notice that follows a dictation.
//
// Main thread.
class CompletionFeedback {
public:
    enum class State {
        hidden,
        confirmation, // a short notice that goes by itself
        review, // something to read or copy; stays until the next dictation or until it is dismissed
    };

    static constexpr std::chrono::milliseconds confirmationDuration { 1500 };

    // What a finished dictation came to.
    struct Outcome {
        bool saved = false; // the transcript is stored
        bool inserted = false;
        bool copied = false;
        bool reviewRequested = false; // the user wants to read before anything is inserted
    };

    // `clock` must outlive this object.
    CompletionFeedback(PlatformSupport::Executor mainThread, PlatformSupport::Clock& clock);
    CompletionFeedback(const CompletionFeedback&) = delete;
    CompletionFeedback& operator=(const CompletionFeedback&) = delete;
    ~CompletionFeedback();

    State state() const { return state_; }
    const std::string& confirmationText() const { return confirmationText_; }

    void show(const Outcome& outcome);

    // "Saved to history", to be read until it is dismissed.
    void showReview();
    void dismiss();

    std::function<void()> onChange; // called after each change of the state

private:
    void become(State state);
    void dismissLater();

    PlatformSupport::Executor mainThread_;
    PlatformSupport::Clock& clock_;
    State state_ = State::hidden;
    std::string confirmationText_ = "Saved to history";
    std::optional<PlatformSupport::Task<>> dismissal_;
    PlatformSupport::WeakSelf<CompletionFeedback> self_ { this };
};

} // namespace Sorvane
