// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "DictationOnTheDesktop.h"

#include "WordErrors.h"

#include <PlatformSupport/Environment.h>

#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>

namespace KeySymbols = DesktopLinux::KeySymbols;

DictationOnTheDesktop::DictationOnTheDesktop(const std::string& settings, const std::filesystem::path& destination)
    : AccessibilityTesting(destination)
    , sorvane({ TEST_PINS_PROGRAM }, environment(settings))
{
    while (sorvane.output().find("Ready for dictation.\n") == std::string::npos)
        if (!sorvane.hasWritten())
            throw std::runtime_error(sorvane.finish().errors);
}

Environment DictationOnTheDesktop::environment(const std::string& settings) const
{
    std::filesystem::create_directory(settingsFolder / "Sorvane");
    std::ofstream(settingsFolder / "Sorvane/defaults.json") << settings;
    auto environment = models.environment();
    environment["XDG_CONFIG_HOME"] = settingsFolder / "";
    return environment;
}

void DictationOnTheDesktop::holdShortcut()
{
    for (const auto key : { KeySymbols::alt, KeySymbols::space })
        keyboard.fakeKey(keyboard.keyWith(key).value_or(0), true);
    usersConnection.flush();
}

void DictationOnTheDesktop::releaseShortcut()
{
    for (const auto key : { KeySymbols::space, KeySymbols::alt })
        keyboard.fakeKey(keyboard.keyWith(key).value_or(0), false);
    usersConnection.flush();
}

void DictationOnTheDesktop::pressShortcut()
{
    holdShortcut();
    releaseShortcut();
}

// The virtual microphone itself listens to the mouth, as a module of the server.
bool DictationOnTheDesktop::isAnybodyListening()
{
    const auto listeners = runProgram({ "pactl", "list", "short", "source-outputs" }).output;
    return listeners.find("protocol-native.c") != std::string::npos;
}

void DictationOnTheDesktop::untilListening()
{
    while (!isAnybodyListening()) { }
}

void DictationOnTheDesktop::untilNotListening()
{
    while (isAnybodyListening()) { }
}

void DictationOnTheDesktop::speak(const std::string& recording)
{
    const std::string mouth = "--device=" + PlatformSupport::environmentVariable("DESKTOP_SESSION_MOUTH").value_or("");
    EXPECT_EQ(runProgram({ "paplay", mouth, SAMPLES_DIRECTORY "/" + recording + ".wav" }).status, 0);
}

std::string DictationOnTheDesktop::textIn(const std::string& field)
{
    std::string text;
    while (text.size() <= 2)
        text = form.ask("read " + field);
    return text.substr(1, text.size() - 2);
}

size_t DictationOnTheDesktop::errors(const std::string& recording, const std::string& heard)
{
    const auto said = runProgram({ "cat", SAMPLES_DIRECTORY "/" + recording + ".txt" }).output;
    return wordErrors(spokenWords(said), spokenWords(heard));
}
