// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Accessibility/AccessibilityTesting.h"
#include "PublishedModels.h"
#include "X11/Keyboard.h"

#include <cstddef>
#include <filesystem>
#include <string>

// The built application on a real desktop, ready for dictation: the user presses keys and speaks, and looks at what
// stands in the field.
class DictationOnTheDesktop : public DesktopLinux::AccessibilityTesting {
protected:
    // The user's settings, a JSON object, and the program that is dictated into.
    explicit DictationOnTheDesktop(
        const std::string& settings = "{}", const std::filesystem::path& destination = FORM_PROGRAM);

    void holdShortcut();
    void releaseShortcut();
    void pressShortcut(); // and lets go of it at once

    static bool isAnybodyListening();
    static void untilListening();
    static void untilNotListening();

    // Comes back when the last sample has been heard.
    static void speak(const std::string& recording);

    // What stands in the field once anything does, without the brackets that it is told in.
    std::string textIn(const std::string& field);

    // The words that were heard wrongly.
    static size_t errors(const std::string& recording, const std::string& heard);

    TemporaryFolder settingsFolder;
    DesktopLinux::XConnection usersConnection { loop.executor() };
    DesktopLinux::Keyboard keyboard { usersConnection };
    PublishedModels models;
    RunningProgram sorvane;

private:
    Environment environment(const std::string& settings) const;
};
