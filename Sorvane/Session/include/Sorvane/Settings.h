// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/ActivationMode.h>
#include <Sorvane/OutputModeSelection.h>
#include <Sorvane/Shortcut.h>

namespace PlatformSupport {
class UserDefaults;
}

namespace Sorvane {

// What the user has chosen. The names under which the choices are stored are the fields' names.
struct Settings {
    ActivationMode mode = ActivationMode::toggle; // stored as "activationMode"
    Shortcut shortcut = Shortcut::optionSpace;
    bool previewBeforeInsert = false; // read the transcript first, insert nothing
    bool automaticallyCopy = true; // leave the transcript on the clipboard
    OutputModeSelection outputModeSelection = OutputModeSelection::automatic;

    // Where nothing usable is stored, the default holds. For the selection, what older installations stored under
    // "outputMode" and before that under "experimentalCleanup" comes first.
    static Settings read(const PlatformSupport::UserDefaults& defaults);
};

} // namespace Sorvane
