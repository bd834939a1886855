// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>
#include <Sorvane/SpeechEngine.h>

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace Scenarios {

// Hears what it is told, after as long as it is told.
class ScriptedEngine final : public Sorvane::SpeechEngine {
public:
    explicit ScriptedEngine(PlatformSupport::Clock& clock)
        : clock_(clock)
    {
    }

    std::string words;
    std::optional<std::string> failure;
    PlatformSupport::Clock::Duration takes {};
    size_t calls = 0;

    PlatformSupport::Awaitable<std::string> transcribe(std::vector<float>) override
    {
        ++calls;
        const std::string heard = words;
        const auto fails = failure;
        if (takes.count() > 0)
            co_await clock_.sleep(takes);
        if (fails)
            throw std::runtime_error(*fails);
        co_return heard;
    }

private:
    PlatformSupport::Clock& clock_;
};

} // namespace Scenarios
