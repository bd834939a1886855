// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/DictationController.h>
#include <Sorvane/SpeechEngine.h>
#include <Sorvane/TranscriptDelivery.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Sorvane {

// The road of one dictation from the end of speaking to its delivery. The transcript is stored before anything can go
// wrong with it, and after every wait the first question is whether this dictation is still the current one.
//
// Main thread.
class DictationController::Finishing {
public:
    // Stops the recording and goes on in a task of the controller's.
    static void begin(DictationController& controller);

    PlatformSupport::Awaitable<void> run();

private:
    struct Outdated { }; // thrown to end the task without a trace

    Finishing(DictationController& controller, std::vector<float> samples);

    PlatformSupport::Awaitable<void> finish();
    PlatformSupport::Awaitable<std::optional<std::string>> cleanUp();
    PlatformSupport::Awaitable<TranscriptDelivery::Result> deliver();
    void store(const std::string& text);
    void applyCleanup(const std::string& text);
    void conclude(const TranscriptDelivery::Result& result, const std::optional<std::string>& note);
    TranscriptDelivery::Insert insertion() const;

    DictationController* currentController() const;
    DictationController& controller() const;

    Weak controller_;
    PlatformSupport::UUID session_;
    std::shared_ptr<SpeechEngine> engine_;
    TranscriptCleanup cleanup_;
    std::vector<float> samples_;
    double duration_; // seconds

    // As they were when the recording ended; later changes have no effect on this dictation.
    std::optional<TextInsertion::Target> target_;
    TranscriptMode mode_;
    TranscriptDelivery::Wishes wishes_;

    std::optional<TranscriptEntry> entry_; // once stored
};

} // namespace Sorvane
