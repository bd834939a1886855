// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <Sorvane/ActivationMode.h>
#include <Sorvane/RawValue.h>

namespace Sorvane {

std::string_view rawValue(ActivationMode mode)
{
    switch (mode) {
    case ActivationMode::toggle:
        return "Press to start / stop";
    case ActivationMode::hold:
        return "Hold to speak";
    }
    PlatformSupport::fatalError("no such activation mode");
}

std::optional<ActivationMode> activationMode(std::string_view rawValue)
{
    return caseWithRawValue(allActivationModes, rawValue);
}

} // namespace Sorvane
