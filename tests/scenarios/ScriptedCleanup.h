// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>
#include <Sorvane/TranscriptCleanup.h>

#include <cstddef>
#include <exception>
#include <optional>
#include <string>

namespace Scenarios {

// A model that answers what it is told, or else with the transcript itself.
class ScriptedCleanup {
public:
    explicit ScriptedCleanup(PlatformSupport::Clock& clock)
        : clock_(clock)
    {
    }

    std::optional<std::string> answer; // the cleaned text
    std::optional<std::string> output; // all that the model writes, instead
    std::exception_ptr failure;
    PlatformSupport::Clock::Duration takes {};
    size_t calls = 0;
    std::optional<Sorvane::TranscriptCleanup::Context> context; // of the last call

    PlatformSupport::Awaitable<std::string> generate(std::string text, Sorvane::TranscriptCleanup::Context callContext)
    {
        ++calls;
        context = callContext;
        if (takes.count() > 0)
            co_await clock_.sleep(takes);
        if (failure)
            std::rethrow_exception(failure);
        co_return output ? *output : answer.value_or(text) + "<|im_end|> [end of text]\n\n\n";
    }

private:
    PlatformSupport::Clock& clock_;
};

} // namespace Scenarios
