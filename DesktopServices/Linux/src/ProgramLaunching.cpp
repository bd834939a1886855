// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopLinux/ProgramLaunching.h>
#include <PlatformSupport/Environment.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string>
#include <vector>

namespace DesktopLinux {

namespace {

using CommandLine = std::vector<std::string>;

// By these names the logic knows the pages of the settings. Each desktop has a program of its own for them.
constexpr std::string_view microphoneSettings
    = "x-apple.systempreferences:com.apple.preference.security?Privacy_Microphone";
constexpr std::string_view accessibilitySettings
    = "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";

std::vector<CommandLine> candidates(std::string_view url)
{
    if (url == microphoneSettings)
        return { { "gnome-control-center", "sound" }, { "systemsettings", "kcm_pulseaudio" },
            { "systemsettings5", "kcm_pulseaudio" }, { "cinnamon-settings", "sound" }, { "mate-volume-control" },
            { "pavucontrol", "--tab=4" } };
    if (url == accessibilitySettings)
        return { { "gnome-control-center", "universal-access" }, { "systemsettings", "kcm_access" },
            { "systemsettings5", "kcm_access" }, { "cinnamon-settings", "accessibility" }, { "mate-at-properties" },
            { "xfce4-accessibility-settings" } };
    if (url.starts_with("https://") || url.starts_with("http://"))
        return { { "xdg-open", std::string(url) } };
    return {};
}

// Empty if no folder of $PATH has it.
std::string findProgram(const std::string& name)
{
    const auto variable = PlatformSupport::environmentVariable("PATH").value_or("/usr/local/bin:/usr/bin:/bin");
    std::string_view rest = variable;
    while (!rest.empty()) {
        const auto folder = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
        auto path = std::string(folder) + "/" + name;
        if (folder.starts_with('/') && ::access(path.c_str(), X_OK) == 0)
            return path;
    }
    return {};
}

// "setsid --fork" goes on in a session of its own and comes back at once, so that nobody has to wait for the program.
bool startDetached(CommandLine command)
{
    command.insert(command.begin(), { "setsid", "--fork" });
    std::vector<char*> arguments;
    for (auto& word : command)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t files;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    // Requests to end, which this program takes in its own way, reach the other as always.
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    sigset_t none;
    ::sigemptyset(&none);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    pid_t child = 0;
    const int failure = ::posix_spawnp(&child, "setsid", &files, &attributes, arguments.data(), environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&files);
    int status = 0;
    while (failure == 0 && ::waitpid(child, &status, 0) < 0 && errno == EINTR) { }
    return failure == 0 && status == 0;
}

} // namespace

bool ProgramLaunching::open(std::string_view url)
{
    for (auto& command : candidates(url)) {
        const auto program = findProgram(command.front());
        if (program.empty())
            continue;
        command.front() = program;
        return startDetached(std::move(command));
    }
    return false;
}

} // namespace DesktopLinux
