// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>

#include <functional>
#include <string>
#include <variant>

namespace Sorvane {

// Brings a finished transcript to where the user wants it: into the field, or else onto the clipboard. A failure to
// insert is no error, it becomes a copy.
//
// Main thread.
class TranscriptDelivery {
public:
    struct Inserted { };
    struct Copied { };
    struct Message { // neither happened: the words to show
        std::string text;
    };
    using Result = std::variant<Inserted, Copied, Message>;

    // Puts a text onto the clipboard; whether that worked.
    using Copy = std::function<bool(const std::string&)>;

    // Puts the transcript into the captured field, leaving it on the clipboard if told to. Throws when it cannot.
    using Insert = std::function<PlatformSupport::Awaitable<void>(bool keepTranscriptOnClipboard)>;

    struct Wishes {
        bool automaticallyCopy = true;
        bool reviewRequested = false;
    };

    explicit TranscriptDelivery(Copy copy);

    // `insert` may be empty: no field is known.
    //
    // Errors: CancellationError, and only that
    PlatformSupport::Awaitable<Result> deliver(std::string text, Wishes wishes, Insert insert) const;

private:
    Result copied(const std::string& text, const std::string& otherwise, Wishes wishes) const;

    Copy copy_;
};

} // namespace Sorvane
