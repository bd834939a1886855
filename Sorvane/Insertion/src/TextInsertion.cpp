// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopServices/AccessibilityNames.h>
#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/TaskContext.h>
#include <Sorvane/ClipboardSnapshot.h>
#include <Sorvane/TextInsertion.h>

#include <utility>

namespace Sorvane {

namespace AccessibilityAction = DesktopServices::AccessibilityAction;
namespace AccessibilityAttribute = DesktopServices::AccessibilityAttribute;
using DesktopServices::KeyDirection;
using DesktopServices::KeyEvent;
using PlatformSupport::Awaitable;
using PlatformSupport::checkCancellation;
using namespace std::chrono_literals;

namespace {

// The focus is given 1.5 seconds to come back.
constexpr int maximumWaitsForFocus = 30;
constexpr auto waitForFocus = 50ms;

// Programs fetch the clipboard when they get to the key, and none tells when it has done so.
constexpr auto timeToPaste = 900ms;

void checkpoint(const DestinationAccess& access, const InsertionTarget& target)
{
    checkCancellation();
    access.validate(target);
}

// Asks for the focus once, as soon as the application is in front, and waits until the field has it or time is up.
Awaitable<void> regainFocus(const DestinationAccess& access, const InsertionTarget& target)
{
    bool hasAskedForFocus = false;
    for (int waits = 0; waits < maximumWaitsForFocus; ++waits) {
        checkpoint(access, target);
        if (access.isFocused(target))
            co_return;
        const bool isActive = access.isAppActive(target);
        if (isActive && !hasAskedForFocus)
            access.focus(target);
        hasAskedForFocus = hasAskedForFocus || isActive;
        co_await access.wait();
    }
}

void requestFocus(const InsertionTarget& target)
{
    if (target.window) {
        target.window->write(AccessibilityAttribute::minimized, false);
        target.window->perform(AccessibilityAction::raise);
        target.window->write(AccessibilityAttribute::main, true);
    }
    if (target.element)
        target.element->write(AccessibilityAttribute::focused, true);
}

std::optional<KeyEvent> pasteKeyEvent(DesktopServices::KeyEventSource& source, KeyDirection direction)
{
    auto event = source.makeEvent(DesktopServices::virtualKeyV, direction);
    if (event)
        event->flags = DesktopServices::commandMask;
    return event;
}

} // namespace

struct TextInsertion::PasteKey {
    std::unique_ptr<DesktopServices::KeyEventSource> source;
    KeyEvent down;
    KeyEvent up;

    void press(DesktopServices::ProcessIdentifier process) const
    {
        source->post(down, process);
        source->post(up, process);
    }
};

TextInsertion::TextInsertion(const DesktopServices::Desktop& desktop, PlatformSupport::Clock& clock)
    : desktop_(desktop)
    , clock_(clock)
{
}

DestinationAccess TextInsertion::systemAccess(Clipboard clipboard)
{
    return {
        .validate = [this](const Target& target) { validateDestination(target); },
        .isAppActive = [this](const Target& target) { return isAppActive(target); },
        .isFocused = [this](const Target& target) { return destinationIsFocused(target); },
        .activate =
            [](const Target& target) {
                if (target.application)
                    target.application->activate();
            },
        .focus = requestFocus,
        .paste
        = [this, clipboard](const std::string& text, const Target& target) { return paste(text, target, clipboard); },
        .wait = [this] { return clock_.sleep(waitForFocus); },
    };
}

Awaitable<void> TextInsertion::insert(std::string text, Target target, Clipboard clipboard)
{
    const DestinationAccess access = destinationAccess ? *destinationAccess : systemAccess(clipboard);
    if (!target.element)
        throw InsertionError(InsertionError::Case::unverifiedField);
    checkpoint(access, target);
    if (!access.isFocused(target)) {
        if (!access.isAppActive(target))
            access.activate(target);
        co_await regainFocus(access, target);
    }
    checkpoint(access, target);
    if (!access.isFocused(target))
        throw InsertionError(InsertionError::Case::focusChanged);
    co_await access.paste(text, target);
}

Awaitable<void> TextInsertion::paste(std::string text, Target target, Clipboard clipboard)
{
    checkCancellation();
    proveDestination(target);
    const PasteKey key = makePasteKey();
    if (!co_await key.source->untilModifiersAreUp())
        throw InsertionError(InsertionError::Case::eventCreation);
    co_await untilFocused(target);
    checkCancellation();
    auto& pasteboard = desktop_.pasteboard;
    const auto snapshot = co_await ClipboardSnapshot::of(pasteboard);
    checkCancellation(); // for the last time: from here on the clipboard is put back first

    pasteboard.clearContents();
    const bool isWritten = pasteboard.setString(text, DesktopServices::pasteboardStringType);
    const auto changeCount = pasteboard.changeCount();
    try {
        if (!isWritten)
            throw InsertionError(InsertionError::Case::clipboardWrite);
        proveDestination(target);
        key.press(target.pid);
    } catch (...) {
        snapshot.restore(pasteboard, changeCount);
        throw;
    }
    co_await waitForPaste();
    if (!pasteboard.wasTakenBy(target.pid))
        desktop_.diagnosticLog.error(insertionLog, "The destination did not ask for the transcript");
    if (clipboard == Clipboard::restored || PlatformSupport::isCancelled())
        snapshot.restore(pasteboard, changeCount);
}

void TextInsertion::proveDestination(const Target& target)
{
    validateDestination(target);
    if (!destinationIsFocused(target))
        throw InsertionError(InsertionError::Case::focusChanged);
}

// A program that has lost the keys to the shortcut gets them back a moment after that is up.
Awaitable<void> TextInsertion::untilFocused(const Target& target)
{
    for (int waits = 0; !destinationIsFocused(target); ++waits) {
        if (waits == maximumWaitsForFocus)
            throw InsertionError(InsertionError::Case::focusChanged);
        co_await clock_.sleep(waitForFocus);
    }
}

TextInsertion::PasteKey TextInsertion::makePasteKey() const
{
    if (auto source = desktop_.keyEvents.makePrivateSource()) {
        const auto down = pasteKeyEvent(*source, KeyDirection::down);
        const auto up = pasteKeyEvent(*source, KeyDirection::up);
        if (down && up)
            return { std::move(source), *down, *up };
    }
    throw InsertionError(InsertionError::Case::eventCreation);
}

Awaitable<void> TextInsertion::waitForPaste() const
{
    try {
        co_await clock_.sleep(timeToPaste);
    } catch (const PlatformSupport::CancellationError&) {
        // The key is pressed already: the clipboard is put back, and the paste counts.
    }
}

} // namespace Sorvane
