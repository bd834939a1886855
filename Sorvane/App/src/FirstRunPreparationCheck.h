// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Composition.h"
#include "Interruption.h"

#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/UUID.h>
#include <Sorvane/CleanupFiles.h>
#include <Sorvane/LinkGrammarTagger.h>
#include <Sorvane/ModelPreparation.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace Sorvane {

class ModelServices;

// A whole first run without a user, in a directory that did not exist before and is gone afterwards, even if the
// process is asked to end meanwhile.
class FirstRunPreparationCheck {
public:
    // What a user would have missed.
    class CheckFailure : public std::runtime_error {
        using std::runtime_error::runtime_error;
    };

    explicit FirstRunPreparationCheck(const Composition& composition);
    FirstRunPreparationCheck(const FirstRunPreparationCheck&) = delete;
    FirstRunPreparationCheck& operator=(const FirstRunPreparationCheck&) = delete;
    ~FirstRunPreparationCheck();

    // Tells on standard output how far it has come.
    // Errors: CheckFailure, and those of TranscriptCleanup::generate()
    void run();

private:
    using Stage = ModelPreparation::Stage;

    std::vector<Stage> prepare(ModelServices& services);
    PlatformSupport::Awaitable<void> prepareSpeech(ModelServices& services, PreparationProgress progress) const;
    void requireEdit(ModelServices& services);
    void stop();
    void runToEnd(std::function<void()> cancel, const std::function<bool()>& isFinished);

    const Composition& composition_;
    PlatformSupport::RandomUUIDs uuids_;
    PlatformSupport::HandTurnedLoop mainThread_;
    LinkGrammarTagger tagger_;
    std::filesystem::path directory_;
    bool isStopped_ = false;
    std::function<void()> cancel_; // what runs now
    Interruption interruption_;
};

} // namespace Sorvane
