// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Task.h>
#include <Regex/Pattern.h>
#include <Sorvane/CleanupFailure.h>
#include <Sorvane/DictationFormatting.h>
#include <Sorvane/SequentialListFormatting.h>
#include <Sorvane/TranscriptCleanup.h>

#include <utility>

namespace Sorvane {

namespace {

using PlatformSupport::Awaitable;

constexpr size_t longestText = 16'000; // bytes; longer ones cannot fit, and need no tokeniser to say so

CleanupResult original(std::string text, std::optional<std::string> message = std::nullopt)
{
    return { .text = std::move(text), .usedOriginal = true, .message = std::move(message) };
}

bool isNothingButHesitation(std::string_view text)
{
    static const Regex::Pattern fillers = Regex::rx(R"((?i)^\s*(?:(?:um+|uh+|erm|er)[\s,.!?…]*)+$)");
    return fillers.contains(text);
}

// The result where it is clear without the model.
std::optional<CleanupResult> resultWithoutModel(const std::string& text, TranscriptCleanup::Enabled enabled)
{
    if (enabled == TranscriptCleanup::Enabled::no || PlatformSupport::isCancelled() || text.empty())
        return original(text);
    if (text.size() > longestText)
        return original(text, "Original used: transcript is too long for cleanup.");
    if (text.find("<|") != std::string::npos)
        return original(text, "Original used: transcript contains model control tokens.");
    if (DictationFormatting::needsVerbatim(text))
        return original(text);
    if (isNothingButHesitation(text))
        return CleanupResult { .text = "", .usedOriginal = false, .message = std::nullopt };
    return std::nullopt;
}

std::string messageFor(CleanupFailure::Case failure)
{
    if (failure == CleanupFailure::Case::inputTooLong)
        return "Original used: S1-mini supports up to 1,000 input tokens.";
    return "Original used: cleanup was unavailable or returned no usable result.";
}

// Who cancelled needs no explanation.
CleanupResult originalAfter(CleanupFailure::Case failure, std::string text)
{
    return PlatformSupport::isCancelled() ? original(std::move(text)) : original(std::move(text), messageFor(failure));
}

} // namespace

TranscriptCleanup::TranscriptCleanup(Generate generate, const LexicalTagger& tagger)
    : generate_(std::move(generate))
    , tagger_(&tagger)
{
}

TranscriptCleanup::TranscriptCleanup(CleanupProcess& process, const LexicalTagger& tagger)
    : TranscriptCleanup(
        [&process, &tagger](std::string text, Context context) {
            return generate(std::move(text), context, CleanupFiles::ofThisUser(), process, tagger);
        },
        tagger)
{
}

Awaitable<CleanupResult> TranscriptCleanup::clean(std::string text, Enabled enabled, Context context) const
{
    try {
        if (auto result = resultWithoutModel(text, enabled))
            co_return std::move(*result);
        std::string tidy = co_await tidied(text, context);
        const bool isOriginal = tidy == text;
        co_return CleanupResult { .text = std::move(tidy), .usedOriginal = isOriginal, .message = std::nullopt };
    } catch (const CleanupFailure& failure) {
        co_return originalAfter(failure.which(), std::move(text));
    } catch (...) { // the words matter more than whatever went wrong
        co_return originalAfter(CleanupFailure::Case::unavailable, std::move(text));
    }
}

Awaitable<std::string> TranscriptCleanup::tidied(const std::string& text, Context context) const
{
    const auto list = DictationFormatting::enumeration(text, *tagger_);
    const std::string output = co_await generate_(text, context);
    PlatformSupport::checkCancellation();
    auto valid = validate(output, text);
    if (!valid)
        throw CleanupFailure(CleanupFailure::Case::invalidOutput);
    if (context == Context::email)
        co_return std::move(*valid);
    co_return list ? list->restoringLayout(*valid, *tagger_) : SequentialListFormatting::restoringLayout(*valid, text);
}

} // namespace Sorvane
