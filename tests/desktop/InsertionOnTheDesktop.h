// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "RealDesktop.h"

#include <PlatformSupport/Task.h>
#include <Sorvane/TextInsertion.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace Sorvane {

// Text on its way into a real program, on a real desktop. Nobody speaks.
class InsertionOnTheDesktop : public testing::Test, public RealDesktop {
protected:
    using Clipboard = TextInsertion::Clipboard;
    using HotKeyEvent = DesktopServices::HotKeyEvent;

    InsertionOnTheDesktop()
    {
        untilAccessible();
        x11.hotKey().setHandler([this](HotKeyEvent event) {
            ++shortcutEvents;
            if (event == HotKeyEvent::pressed && !target)
                capture();
        });
        EXPECT_TRUE(x11.hotKey().registerChord({ 49, DesktopServices::HotKeyModifier::option }));
    }

    void capture()
    {
        try {
            target = insertion.captureForRecording();
        } catch (const InsertionError& error) {
            failure = error.which();
        }
    }

    // The user presses the shortcut and holds it until it is noticed.
    void pressShortcut()
    {
        press({ DesktopLinux::KeySymbols::alt, DesktopLinux::KeySymbols::space });
        loop.turnUntil([this, before = shortcutEvents] { return shortcutEvents > before; });
        release({ DesktopLinux::KeySymbols::space, DesktopLinux::KeySymbols::alt });
        loop.turnUntil([&] { return !x11.isShortcutHeld(); });
    }

    // Comes back when the field has the focus again, which the shortcut takes away.
    void speakInto(const std::string& field)
    {
        goTo(field);
        pressShortcut();
        untilFocused(field);
        ASSERT_TRUE(target);
        ASSERT_TRUE(target->element);
    }

    PlatformSupport::Task<> startInserting(const std::string& text, Clipboard clipboard = Clipboard::restored)
    {
        const auto work = [this, text, clipboard] { return insertion.insert(text, target.value(), clipboard); };
        return PlatformSupport::startTask(loop.executor(), work);
    }

    void insert(const std::string& text, Clipboard clipboard = Clipboard::restored)
    {
        loop.finish(startInserting(text, clipboard));
    }

    // How an insertion fails; nothing if it does not.
    std::optional<InsertionError::Case> failureOf(const PlatformSupport::Task<>& task)
    {
        try {
            loop.finish(task);
            return std::nullopt;
        } catch (const InsertionError& error) {
            return error.which();
        }
    }

    TextInsertion insertion { services(), clock };
    int shortcutEvents = 0;
    std::optional<InsertionTarget> target;
    std::optional<InsertionError::Case> failure;
};

} // namespace Sorvane
