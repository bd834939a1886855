// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <Sorvane/InsertionError.h>

namespace Sorvane {

namespace {

const char* message(InsertionError::Case which)
{
    using enum InsertionError::Case;
    switch (which) {
    case permission:
        return "Allow Accessibility access so Sorvane can insert text into other apps.";
    case noField:
        return "Place the cursor in a text field in another app, then try again.";
    case secureField:
        return "Dictation is unavailable in password fields.";
    case unverifiedField:
        return "This app does not expose a verified text field. Your transcript is ready to copy.";
    case unavailableTarget:
        return "The original text field is no longer available. Your transcript is ready to copy.";
    case focusChanged:
        return "Sorvane could not restore the original text field. Your transcript is ready to copy.";
    case eventCreation:
        return "macOS could not insert the text. Copy your transcript below.";
    case clipboardWrite:
        return "macOS could not copy the transcript for insertion. Copy your transcript below.";
    }
    PlatformSupport::fatalError("no such insertion error");
}

} // namespace

InsertionError::InsertionError(Case which)
    : std::runtime_error(message(which))
    , which_(which)
{
}

} // namespace Sorvane
