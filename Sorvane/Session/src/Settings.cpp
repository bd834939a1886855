// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/UserDefaults.h>
#include <Sorvane/Settings.h>

namespace Sorvane {

using PlatformSupport::UserDefaults;

namespace {

// What the text stored under the name stands for.
template <typename T>
std::optional<T> stored(const UserDefaults& defaults, const char* name, std::optional<T> (*parse)(std::string_view))
{
    const auto text = defaults.string(name);
    return text ? parse(*text) : std::nullopt;
}

OutputModeSelection storedSelection(const UserDefaults& defaults)
{
    for (const char* const name : { "outputModeSelection", "outputMode" }) {
        if (const auto selection = stored(defaults, name, outputModeSelection))
            return *selection;
    }
    if (const auto cleansUp = defaults.boolean("experimentalCleanup"))
        return *cleansUp ? OutputModeSelection::clean : OutputModeSelection::raw;
    return OutputModeSelection::automatic;
}

} // namespace

Settings Settings::read(const UserDefaults& defaults)
{
    Settings settings;
    settings.mode = stored(defaults, "activationMode", activationMode).value_or(settings.mode);
    settings.shortcut = stored(defaults, "shortcut", Sorvane::shortcut).value_or(settings.shortcut);
    settings.previewBeforeInsert = defaults.boolean("previewBeforeInsert").value_or(settings.previewBeforeInsert);
    settings.automaticallyCopy = defaults.boolean("automaticallyCopy").value_or(settings.automaticallyCopy);
    settings.outputModeSelection = storedSelection(defaults);
    return settings;
}

} // namespace Sorvane
