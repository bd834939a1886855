// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Environment.h>

#include <cstdlib>

namespace PlatformSupport {

std::optional<std::string> environmentVariable(const std::string& name)
{
    const char* text = std::getenv(name.c_str());
    return text ? std::optional<std::string>(text) : std::nullopt;
}

} // namespace PlatformSupport
