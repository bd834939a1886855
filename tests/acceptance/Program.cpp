// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

extern char** environ; // NOLINT(readability-redundant-declaration): POSIX leaves it to the program

namespace {

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> all;
    all.reserve(texts.size() + 1);
    for (auto& text : texts)
        all.push_back(text.data());
    all.push_back(nullptr);
    return all;
}

std::vector<std::string> environmentWith(std::map<std::string, std::string> changes)
{
    changes.emplace("OSTREL_MODEL_DIRECTORY", SMALL_MODEL_DIRECTORY);
    std::vector<std::string> all;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        if (!changes.contains(text.substr(0, text.find('='))))
            all.push_back(text);
    }
    for (const auto& [name, value] : changes)
        all.push_back(std::string(name).append("=").append(value));
    return all;
}

std::string contents(const std::filesystem::path& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

} // namespace

Outcome runSorvane(const std::vector<std::string>& arguments, std::map<std::string, std::string> environment)
{
    const TemporaryFolder folder;
    const std::string output = folder / "output";
    const std::string errors = folder / "errors";
    std::vector<std::string> words { SORVANE_PROGRAM };
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> settings = environmentWith(std::move(environment));

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    constexpr int fresh = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), fresh, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), fresh, 0600);
    pid_t child = 0;
    const int failure
        = posix_spawn(&child, SORVANE_PROGRAM, &actions, nullptr, pointers(words).data(), pointers(settings).data());
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0)
        throw std::runtime_error("cannot start " SORVANE_PROGRAM);

    int status = 0;
    waitpid(child, &status, 0);
    return { WIFEXITED(status) ? WEXITSTATUS(status) : -1, contents(output), contents(errors) };
}
