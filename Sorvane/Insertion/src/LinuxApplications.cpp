// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "LinuxApplications.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Sorvane {

namespace {

using Renaming = std::pair<std::string_view, std::string_view>;

constexpr std::array<Renaming, 17> renamings { {
    { "google-chrome", "com.google.Chrome" },
    { "google-chrome-beta", "com.google.Chrome" },
    { "google-chrome-unstable", "com.google.Chrome.canary" },
    { "com.google.ChromeDev", "com.google.Chrome.canary" },
    { "chromium", "org.chromium.Chromium" },
    { "chromium-browser", "org.chromium.Chromium" },
    { "chromium_chromium", "org.chromium.Chromium" },
    { "microsoft-edge", "com.microsoft.edgemac" },
    { "microsoft-edge-beta", "com.microsoft.edgemac" },
    { "microsoft-edge-dev", "com.microsoft.edgemac" },
    { "com.microsoft.Edge", "com.microsoft.edgemac" },
    { "brave-browser", "com.brave.Browser" },
    { "brave_brave", "com.brave.Browser" },
    { "com.brave.Browser.beta", "com.brave.Browser" },
    { "firefox", "org.mozilla.firefox" },
    { "firefox-esr", "org.mozilla.firefox" },
    { "firefox_firefox", "org.mozilla.firefox" },
} };

constexpr std::array<std::string_view, 10> mailApps { "thunderbird", "thunderbird_thunderbird", "thunderbird-esr",
    "org.mozilla.Thunderbird", "org.mozilla.thunderbird", "org.gnome.Evolution", "evolution", "org.gnome.Geary",
    "org.kde.kmail2", "org.kde.kmail" };

constexpr std::array<std::string_view, 25> terminals { "org.gnome.Terminal", "org.gnome.Console", "org.gnome.Ptyxis",
    "org.kde.konsole", "org.kde.yakuake", "xfce4-terminal", "xterm", "debian-xterm", "debian-uxterm", "lxterminal",
    "qterminal", "mate-terminal", "io.elementary.terminal", "deepin-terminal", "terminator", "tilix",
    "com.gexperts.Tilix", "guake", "terminology", "kitty", "Alacritty", "foot", "org.wezfurlong.wezterm",
    "com.mitchellh.ghostty", "rxvt-unicode" };

constexpr std::string_view terminalWithPrefix = "xfce4-terminal";
constexpr std::string_view terminalPrefix = "Terminal - ";

template <typename Table> bool contains(const Table& table, std::string_view identifier)
{
    return std::find(table.begin(), table.end(), identifier) != table.end();
}

} // namespace

std::string_view detectionIdentifier(std::string_view bundleIdentifier)
{
    for (const auto& [linuxIdentifier, known] : renamings)
        if (linuxIdentifier == bundleIdentifier)
            return known;
    return bundleIdentifier;
}

bool isLinuxMailApp(std::string_view bundleIdentifier)
{
    return contains(mailApps, bundleIdentifier);
}

std::string nameForHarnessDetection(const DesktopServices::RunningApplication& application)
{
    const auto identifier = application.bundleIdentifier();
    if (identifier && contains(terminals, *identifier))
        return "terminal";
    return application.localizedName().value_or("");
}

std::string titleForHarnessDetection(
    const DesktopServices::RunningApplication& application, const std::string& windowTitle)
{
    const bool hasPrefix
        = application.bundleIdentifier() == terminalWithPrefix && windowTitle.starts_with(terminalPrefix);
    return hasPrefix ? windowTitle.substr(terminalPrefix.size()) : windowTitle;
}

} // namespace Sorvane
