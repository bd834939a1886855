// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <optional>
#include <string>

namespace PlatformSupport {

// The variable's text; absent if it is not set. Set to nothing counts as set.
std::optional<std::string> environmentVariable(const std::string& name);

} // namespace PlatformSupport
