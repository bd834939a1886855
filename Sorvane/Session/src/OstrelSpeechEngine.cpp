// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/OstrelSpeechEngine.h>

#include <utility>

namespace Sorvane {

OstrelSpeechEngine::OstrelSpeechEngine(std::unique_ptr<Ostrel::Ostrel> engine)
    : engine_(std::move(engine))
{
}

PlatformSupport::Awaitable<std::string> OstrelSpeechEngine::transcribe(std::vector<float> samples)
{
    const auto work = [engine = engine_, samples = std::move(samples)] { return engine->transcribe(samples).text; };
    co_return co_await thread_.run(work);
}

} // namespace Sorvane
