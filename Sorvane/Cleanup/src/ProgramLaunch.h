// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "ChildProcess.h"

namespace Sorvane {

// A child that runs its program.
struct LaunchedProgram {
    pid_t process = 0; // also the number of its process group
    PlatformSupport::FileDescriptor output; // where its standard output can be read
};

// Starts the program as ChildProcess tells. Errors: std::system_error, and then no child is left
LaunchedProgram launchProgram(const ChildProcess::Description& description);

} // namespace Sorvane
