// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "RealParts.h"

#include <Sorvane/OstrelSpeechEngine.h>

#include <fstream>

namespace Scenarios {

namespace fs = std::filesystem;

RealParts::RealParts(fs::path folder)
    : files_ { std::move(folder) }
{
    fs::create_directories(files_.runtime());
    for (const auto& tool : { files_.generator(), files_.tokeniser() })
        fs::create_symlink(fs::path(CLEANUP_TOOLS_DIRECTORY) / tool.filename(), tool);
    std::ofstream(files_.weights()).close();
    fs::resize_file(files_.weights(), Sorvane::cleanupWeightsSize);
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
