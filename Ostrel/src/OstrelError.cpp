// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Ostrel/OstrelError.h>

namespace Ostrel {

OstrelError OstrelError::invalidModel(const std::string& what)
{
    return { Case::invalidModel, "invalid model: " + what };
}

OstrelError OstrelError::invalidAudio(const std::string& what)
{
    return { Case::invalidAudio, "invalid audio: " + what };
}

OstrelError OstrelError::unsupportedPlatform()
{
    return { Case::unsupportedPlatform, "Ostrel requires Core ML and runs on Apple platforms only" };
}

} // namespace Ostrel
