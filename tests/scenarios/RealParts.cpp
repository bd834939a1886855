// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "RealParts.h"

#include <Sorvane/OstrelSpeechEngine.h>

#include <CleanupStandIns.h>

namespace Scenarios {

namespace fs = std::filesystem;

RealParts::RealParts(fs::path folder)
    : files_ { std::move(folder) }
{
    TestSupport::installCleanupStandIns(files_);
}

std::shared_ptr<Sorvane::SpeechEngine> RealParts::loadEngine()
{
    return std::make_shared<Sorvane::OstrelSpeechEngine>(
        std::make_unique<Ostrel::Ostrel>(fs::path(SMALL_MODEL_DIRECTORY)));
}

PlatformSupport::Awaitable<std::string> RealParts::generate(
    std::string text, Sorvane::TranscriptCleanup::Context context)
{
    return Sorvane::TranscriptCleanup::generate(std::move(text), context, files_, process_, tagger_);
}

} // namespace Scenarios
