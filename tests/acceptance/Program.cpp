// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Program.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <fstream>
#include <ios>
#include <stdexcept>
#include <utility>

extern char** environ; // NOLINT(readability-redundant-declaration): POSIX leaves it to the program

namespace {

using PlatformSupport::FileDescriptor;

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> all;
    all.reserve(texts.size() + 1);
    for (auto& text : texts)
        all.push_back(text.data());
    all.push_back(nullptr);
    return all;
}

std::vector<std::string> environmentWith(Environment changes)
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

pid_t spawn(Words words, Environment environment, int output, const std::string& errors)
{
    std::vector<std::string> settings = environmentWith(std::move(environment));
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t child = 0;
    const int failure = posix_spawnp(
        &child, words.front().c_str(), &actions, nullptr, pointers(words).data(), pointers(settings).data());
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0)
        throw std::runtime_error("cannot start " + words.front());
    return child;
}

} // namespace

RunningProgram::RunningProgram(Words words, Environment environment)
{
    std::array<int, 2> ends {};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    output_ = FileDescriptor(ends[0]);
    const FileDescriptor writing(ends[1]);
    process_ = spawn(std::move(words), std::move(environment), writing.number(), folder_ / "errors");
}

RunningProgram::~RunningProgram()
{
    kill();
    finish();
}

bool RunningProgram::hasWritten(std::chrono::milliseconds limit)
{
    pollfd watched { output_.number(), POLLIN, 0 };
    char byte = 0;
    if (::poll(&watched, 1, static_cast<int>(limit.count())) <= 0 || ::read(output_.number(), &byte, 1) != 1)
        return false;
    written_ += byte;
    return true;
}

void RunningProgram::kill() const
{
    if (process_ != 0)
        ::kill(process_, SIGKILL);
}

bool RunningProgram::holdsBackInterrupts() const
{
    std::ifstream status("/proc/" + std::to_string(process_) + "/status");
    std::string key;
    while (status >> key && key != "SigBlk:") { }
    unsigned long long blocked = 0;
    status >> std::hex >> blocked;
    return ((blocked >> (SIGINT - 1)) & 1) != 0;
}

void RunningProgram::interrupt() const
{
    ::kill(process_, SIGINT);
}

Outcome RunningProgram::finish()
{
    while (hasWritten()) { }
    int status = 0;
    if (process_ != 0)
        ::waitpid(std::exchange(process_, 0), &status, 0);
    return { WIFEXITED(status) ? WEXITSTATUS(status) : -1, written_, folder_.contents("errors") };
}

Outcome runProgram(Words words, Environment environment)
{
    return RunningProgram(std::move(words), std::move(environment)).finish();
}

Outcome runSorvane(const Words& arguments, Environment environment)
{
    Words words { SORVANE_PROGRAM };
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runProgram(std::move(words), std::move(environment));
}
