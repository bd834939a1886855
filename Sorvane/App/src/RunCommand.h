// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <span>
#include <string>

namespace Sorvane {

struct Composition;

// The whole life of the program: does what the arguments ask for, and returns the exit status.
int runCommand(std::span<const std::string> arguments, const Composition& composition);

} // namespace Sorvane
