// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <Sorvane/CleanupFiles.h>
#include <Sorvane/CleanupResult.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace Sorvane {

class CleanupProcess;
class LexicalTagger;

// Decides whether a finished transcript goes to the local model, has it tidied, and judges what comes back.
//
// The user's words are never lost: whatever goes wrong, clean() gives the transcript as it was. It keeps nothing
// between calls and starts the tools afresh for each transcript. Any thread.
class TranscriptCleanup {
public:
    // The one setting of the model that differs by mode: `general` for Structured, `email` for Email.
    enum class Context { general, email };

    enum class Enabled { no, yes };

    // Makes a tidied text of a transcript. Throws what it likes; called from any thread.
    using Generate = std::function<PlatformSupport::Awaitable<std::string>(std::string text, Context context)>;

    // By the model that is installed for this user. Both outlive this object and its copies.
    TranscriptCleanup(CleanupProcess& process, const LexicalTagger& tagger);

    TranscriptCleanup(Generate generate, const LexicalTagger& tagger);

    // Never throws; this object outlives the wait. A cancelled task gets the transcript as it was, without a message.
    PlatformSupport::Awaitable<CleanupResult> clean(std::string text, Enabled enabled, Context context) const;

    // The tidied text in what the model wrote for a transcript: all before its stop marker, which must be there.
    // Nothing if the model wrote on after it, wrote nothing or control tokens, or wrote more than twice the
    // transcript's bytes (but up to 256 in any case).
    static std::optional<std::string> validate(std::string_view output, std::string_view original);

    // What the model is given for a transcript.
    static std::string prompt(std::string_view text, Context context, const LexicalTagger& tagger);

    // Counts the transcript's tokens and runs the model, both as child processes of at most 30 seconds; what the model
    // wrote, with its stop marker and whatever else.
    //
    // Errors: CancellationError, CleanupFailure, and those of CleanupProcess::run()
    static PlatformSupport::Awaitable<std::string> generate(
        std::string text, Context context, CleanupFiles files, CleanupProcess& process, const LexicalTagger& tagger);

private:
    PlatformSupport::Awaitable<std::string> tidied(const std::string& text, Context context) const;

    Generate generate_;
    const LexicalTagger* tagger_;
};

// As the model is told: "general", "email".
std::string_view rawValue(TranscriptCleanup::Context context);

} // namespace Sorvane
