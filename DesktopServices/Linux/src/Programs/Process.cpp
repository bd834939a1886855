// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Programs/Process.h"

#include <array>
#include <charconv>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

namespace DesktopLinux {

namespace fs = std::filesystem;

namespace {

// Of what follows the program's name in /proc/PID/stat, counted from 0.
constexpr size_t stateField = 0;
constexpr size_t startTimeField = 19;

// Every program built on Chromium needs it.
constexpr std::string_view engineFile = "chrome_100_percent.pak";

fs::path folderOf(const ProcessRun& process)
{
    return fs::path("/proc") / std::to_string(process.identifier);
}

// These files have no size that could be asked for.
std::string contentsOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>() };
}

std::string_view field(std::string_view fields, size_t number)
{
    for (; number > 0; --number)
        fields.remove_prefix(std::min(fields.find(' '), fields.size() - 1) + 1);
    return fields.substr(0, fields.find(' '));
}

} // namespace

std::optional<ProcessRun> runningProcess(DesktopServices::ProcessIdentifier identifier)
{
    ProcessRun process { .identifier = identifier };
    const auto status = contentsOf(folderOf(process) / "stat");
    const auto nameEnd = status.rfind(") "); // the name may hold anything
    if (identifier <= 0 || nameEnd == status.npos)
        return std::nullopt;
    const auto fields = std::string_view(status).substr(nameEnd + 2);
    const auto state = field(fields, stateField);
    const auto startTime = field(fields, startTimeField);
    const auto parsed = std::from_chars(startTime.data(), startTime.data() + startTime.size(), process.startTime);
    if (state == "Z" || state == "X" || parsed.ec != std::errc())
        return std::nullopt;
    return process;
}

bool isRunning(const ProcessRun& process)
{
    return runningProcess(process.identifier) == process;
}

fs::path executableOf(const ProcessRun& process)
{
    std::error_code failure;
    const auto path = fs::read_symlink(folderOf(process) / "exe", failure);
    return failure ? fs::path() : path;
}

bool bringsBrowserEngine(const ProcessRun& process)
{
    const auto executable = executableOf(process);
    std::error_code failure;
    return !executable.empty()
        && fs::exists(folderOf(process) / "root" / executable.parent_path().relative_path() / engineFile, failure);
}

std::optional<std::string> startVariable(const ProcessRun& process, std::string_view name)
{
    const auto environment = contentsOf(folderOf(process) / "environ");
    std::string_view rest = environment;
    while (!rest.empty()) {
        const auto variable = rest.substr(0, rest.find('\0'));
        if (variable.size() > name.size() && variable.starts_with(name) && variable[name.size()] == '=')
            return std::string(variable.substr(name.size() + 1));
        rest.remove_prefix(std::min(variable.size() + 1, rest.size()));
    }
    return std::nullopt;
}

} // namespace DesktopLinux
