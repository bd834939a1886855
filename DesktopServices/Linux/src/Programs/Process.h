// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/ProcessIdentifier.h>

#include <cstdint>
#include <filesystem>
#include <optional>

namespace DesktopLinux {

// One run of a program: a number that is given out again later, and when it started, which tells the runs apart.
struct ProcessRun {
    DesktopServices::ProcessIdentifier identifier = 0;
    std::uint64_t startTime = 0; // in the system's ticks since it started

    auto operator<=>(const ProcessRun&) const = default;
};

// The process that has this number now; nothing if none has, or if it has ended and only its parent has not noticed.
std::optional<ProcessRun> runningProcess(DesktopServices::ProcessIdentifier identifier);

bool isRunning(const ProcessRun& process);

// The executable's path as the process itself sees it; empty if that is not ours to know.
std::filesystem::path executableOf(const ProcessRun& process);

// Whether the executable lies beside the files of a browser engine.
bool bringsBrowserEngine(const ProcessRun& process);

// A variable of the environment that the process was started with.
std::optional<std::string> startVariable(const ProcessRun& process, std::string_view name);

} // namespace DesktopLinux
