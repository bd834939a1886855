// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/SystemClock.h>
#include <PlatformSupport/UUID.h>
#include <Sorvane/CleanupFiles.h>
#include <Sorvane/CleanupProcess.h>
#include <Sorvane/LinkGrammarTagger.h>
#include <Sorvane/SpeechEngine.h>
#include <Sorvane/TranscriptCleanup.h>

#include <filesystem>
#include <memory>
#include <string>

namespace Scenarios {

// The engine with the small English model, and cleanup by child processes that stand in for the local model's tools.
class RealParts {
public:
    // Installs the tools in the folder.
    explicit RealParts(std::filesystem::path folder);

    static std::shared_ptr<Sorvane::SpeechEngine> loadEngine();

    PlatformSupport::Awaitable<std::string> generate(std::string text, Sorvane::TranscriptCleanup::Context context);

private:
    Sorvane::CleanupFiles files_;
    PlatformSupport::SystemClock clock_;
    PlatformSupport::RandomUUIDs uuids_;
    Sorvane::LinkGrammarTagger tagger_;
    Sorvane::CleanupProcess process_ { clock_, uuids_ };
};

} // namespace Scenarios
