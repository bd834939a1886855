// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TokenCount.h"
#include "ToolArguments.h"

#include <PlatformSupport/Task.h>
#include <Sorvane/CleanupFailure.h>
#include <Sorvane/CleanupProcess.h>
#include <Sorvane/TranscriptCleanup.h>

#include <utility>

namespace Sorvane {

namespace {

constexpr std::chrono::seconds timeLimit { 30 }; // of each tool

} // namespace

PlatformSupport::Awaitable<std::string> TranscriptCleanup::generate(
    std::string text, Context context, CleanupFiles files, CleanupProcess& process, const LexicalTagger& tagger)
{
    if (!files.areInstalled())
        throw CleanupFailure(CleanupFailure::Case::unavailable);
    const CleanupProcess::Invocation tokenising {
        .executable = files.tokeniser(),
        .model = files.weights(),
        .prompt = text,
        .timeout = timeLimit,
        .arguments = tokeniserArguments(files.weights()),
    };
    const size_t tokens = tokenCount(co_await process.run(tokenising));
    if (tokens > longestTranscript)
        throw CleanupFailure(CleanupFailure::Case::inputTooLong);
    PlatformSupport::checkCancellation();

    const CleanupProcess::Invocation generating {
        .executable = files.generator(),
        .model = files.weights(),
        .prompt = prompt(text, context, tagger),
        .timeout = timeLimit,
        .arguments = generatorArguments(files.weights(), tokenBudget(tokens)),
    };
    co_return co_await process.run(generating);
}

} // namespace Sorvane
