// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/Desktop.h>
#include <PlatformSupport/Clock.h>
#include <Sorvane/DestinationAccess.h>
#include <Sorvane/InsertionError.h>
#include <Sorvane/InsertionTarget.h>

#include <optional>
#include <string>
#include <string_view>

namespace Sorvane {

// Remembers the field in which the user is typing, proves later that it is still there, still the same and still has
// the focus, and pastes text into it. It never types into whatever happens to be in front.
//
// Main thread only. A call on another program's element waits for it, but not for long; asynchronous functions leave
// the thread free meanwhile. The desktop and the clock outlive it, as it outlives its insertions.
class TextInsertion {
public:
    using Target = InsertionTarget;

    enum class HarnessSearch { No, Yes };

    TextInsertion(const DesktopServices::Desktop& desktop, PlatformSupport::Clock& clock);
    TextInsertion(const TextInsertion&) = delete;
    TextInsertion& operator=(const TextInsertion&) = delete;

    // Stands in for the desktop's own access in every insertion from now on.
    std::optional<DestinationAccess> destinationAccess;

    // The destination of a recording that begins now. More lenient than capture(): a program in which no field is found
    // gives a target without one, so that the user can dictate all the same.
    //
    // Errors: InsertionError
    //         permission     other programs may not be read
    //         noField        no other program is in front
    //         secureField    a password field has the focus
    //         focusChanged   another program came to the front meanwhile
    Target captureForRecording();

    // The field that has the focus now, and on request the coding agent around it.
    //
    // Errors: InsertionError: permission, noField, secureField
    Target capture(HarnessSearch search);

    // Whether text can be dictated into an element of this kind. One that answers for its selection counts as a field,
    // whatever its role.
    //
    // Errors: InsertionError: secureField, noField
    static void validateField(
        const std::optional<std::string>& role, const std::optional<std::string>& subrole, bool hasSelection);

    // Proves from scratch that the destination still is what was captured. What is amiss goes into the diagnostic log.
    //
    // Errors: InsertionError: permission, unavailableTarget, secureField, noField
    void validateDestination(const Target& target);

    // Whether the very field has the focus, in the very window, in the application in front.
    bool destinationIsFocused(const Target& target);

    // Switches on the elements of an application that keeps them to itself until asked. To be called when an
    // application comes to the front.
    void prepareAccessibility(const DesktopServices::RunningApplication& application);

    // The coding agent that the labels around a field tell of. Takes about a tenth of a second at most.
    std::optional<CodingHarness> codingHarness(const DesktopServices::RunningApplication& application,
        const DesktopServices::AccessibilityElement& focused, const DesktopServices::AccessibilityElement& root);

    enum class Clipboard { restored, keepsTranscript };

    // Brings the destination back to the front, if the user has wandered off, and pastes.
    //
    // Errors: InsertionError, and CancellationError
    //         unverifiedField      the target has no field
    //         focusChanged         the field did not get the focus back within about 1.5 seconds
    //         and those of validateDestination() and paste()
    PlatformSupport::Awaitable<void> insert(std::string text, Target target, Clipboard clipboard);

    // Puts the text on the clipboard, presses the paste key in the destination, which must have the focus, and then
    // puts back what was on the clipboard, unless somebody else has written to it since, or the transcript is to
    // stay. After a failure or a cancellation it is put back in any case. That the destination did not take the text
    // goes into the diagnostic log: there is no telling that it never will.
    //
    // Errors: InsertionError: eventCreation, clipboardWrite, focusChanged, and those of validateDestination();
    //         CancellationError until the text is on the clipboard
    PlatformSupport::Awaitable<void> paste(std::string text, Target target, Clipboard clipboard);

    // The failure of a destination that is not what it was. Only the log learns the reason, and the error of the call
    // that told of it.
    InsertionError unavailable(std::string_view reason,
        DesktopServices::AccessibilityError error = DesktopServices::AccessibilityError::success) const;

private:
    static constexpr DesktopServices::LogCategory insertionLog { "com.nerith.sorvane", "Insertion" };

    struct PasteKey;

    std::shared_ptr<DesktopServices::RunningApplication> foreignApplicationInFront() const;
    bool isAppActive(const Target& target) const;
    void validateApplication(const Target& target) const;
    void validateElement(const Target& target) const;
    void validateWindow(const Target& target) const;
    DestinationAccess systemAccess(Clipboard clipboard);
    PasteKey makePasteKey() const;
    void proveDestination(const Target& target);
    PlatformSupport::Awaitable<void> untilFocused(const Target& target);
    PlatformSupport::Awaitable<void> waitForPaste() const;

    DesktopServices::Desktop desktop_;
    PlatformSupport::Clock& clock_;
};

} // namespace Sorvane
