// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ToolDouble.h"

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

extern char** environ; // NOLINT(readability-redundant-declaration): POSIX leaves it to the program

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

std::string contents(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

[[noreturn]] void failTool(const std::string& complaint)
{
    std::fprintf(stderr, "error: %s\n", complaint.c_str());
    std::_Exit(1);
}

int modeOf(const fs::path& path)
{
    struct stat status { };
    ::stat(path.c_str(), &status);
    return static_cast<int>(status.st_mode & 07777);
}

// What stands behind each open file, but for the one that this function opens.
Json openFiles()
{
    Json files = Json::object();
    const fs::path table = "/proc/self/fd";
    std::vector<fs::path> links;
    for (const auto& entry : fs::directory_iterator(table))
        links.push_back(entry.path());
    for (const auto& link : links) {
        std::error_code ignored;
        if (const auto target = fs::read_symlink(link, ignored); !target.empty())
            files[link.filename().string()] = target.string();
    }
    return files;
}

Json modesIn(const fs::path& directory)
{
    Json modes = Json::object();
    for (const auto& entry : fs::directory_iterator(directory))
        modes[entry.path().filename().string()] = modeOf(entry.path());
    return modes;
}

std::string statusLine(const std::string& name)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(name + ":\t"))
            return line.substr(name.size() + 2);
    return {};
}

void leaveRecord(const std::string& tool, int count, char** values)
{
    const Json files = openFiles();
    std::vector<std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry)
        environment.emplace_back(*entry);
    int deathSignal = 0;
    ::prctl(PR_GET_PDEATHSIG, &deathSignal);
    rlimit core {};
    ::getrlimit(RLIMIT_CORE, &core);
    const fs::path here = fs::current_path();
    const Json record { { "arguments", std::vector<std::string>(values + 1, values + count) },
        { "environment", environment }, { "files", files }, { "directory", here.string() },
        { "directoryMode", modeOf(here) }, { "modes", modesIn(here) },
        { "commandLine", contents("/proc/self/cmdline") }, { "process", ::getpid() }, { "group", ::getpgrp() },
        { "deathSignal", deathSignal }, { "coreLimit", core.rlim_cur }, { "blockedSignals", statusLine("SigBlk") },
        { "ignoredSignals", statusLine("SigIgn") } };
    std::ofstream(tool + ".record") << record.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Held open to the end: whoever reads it sees when the last of us is gone.
class SignOfLife {
public:
    explicit SignOfLife(const std::string& tool)
        : pipe_(::open((tool + ".alive").c_str(), O_WRONLY | O_CLOEXEC))
    {
    }

    void tellThatItIsReady() const
    {
        if (pipe_ >= 0)
            std::ignore = ::write(pipe_, "!", 1);
    }

private:
    int pipe_;
};

[[noreturn]] void waitForEver()
{
    while (true)
        ::pause();
}

void leaveChild(const std::string& word)
{
    constexpr unsigned longestTest = 60; // seconds; nothing else may end a stray child
    if (::fork() != 0)
        return;
    ::alarm(longestTest);
    if (word == "leave-stray-child")
        ::setsid();
    if (word == "leave-quiet-child")
        ::close(STDOUT_FILENO);
    waitForEver();
}

void playCase(const std::string& tool)
{
    const std::string text = contents(tool + ".case");
    const size_t lineEnd = std::min(text.find('\n'), text.size());
    std::istringstream line(text.substr(0, lineEnd));
    std::string word;
    int number = 0;
    line >> word >> number;
    const std::string bytes = text.substr(std::min(lineEnd + 1, text.size()));

    const SignOfLife signOfLife(tool);
    if (word == "wait-stubbornly")
        std::ignore = ::signal(SIGTERM, SIG_IGN);
    if (word.starts_with("leave-"))
        leaveChild(word);
    signOfLife.tellThatItIsReady();
    if (word.empty())
        return;

    const int writes = word == "print-often" ? number : 1;
    for (int i = 0; i < writes; ++i)
        writeOut(bytes);
    while (word == "flood")
        writeOut(bytes);
    if (word == "die")
        std::ignore = ::raise(SIGKILL);
    if (word == "wait-silently")
        ::close(STDOUT_FILENO);
    if (word.starts_with("wait"))
        waitForEver();
    std::_Exit(word == "exit" ? number : 0);
}

ToolCall parse(const std::vector<std::string>& arguments, const KnownOptions& known)
{
    ToolCall call;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const auto option = known.find(arguments[i]);
        if (option == known.end())
            failTool("unknown option " + arguments[i]);
        if (i + static_cast<size_t>(option->second) >= arguments.size())
            failTool("no value for " + arguments[i]);
        const std::string& name = arguments[i];
        call.options[name] = option->second == 0 ? "" : arguments[++i];
    }
    return call;
}

} // namespace

std::string ToolCall::value(const std::string& option, const std::string& otherwise) const
{
    const auto found = options.find(option);
    return found == options.end() ? otherwise : found->second;
}

ToolCall beginTool(int count, char** values, const KnownOptions& known)
{
    const std::string tool = values[0];
    const std::vector<std::string> arguments(values + 1, values + count);
    ::umask(022); // the tests read what it leaves
    leaveRecord(tool, count, values);
    const auto promptOption = std::find(arguments.begin(), arguments.end(), "--binary-file");
    if (promptOption != arguments.end() && promptOption + 1 != arguments.end())
        std::ofstream(tool + ".prompt", std::ios::binary) << contents(promptOption[1]);
    playCase(tool);
    if (arguments == std::vector<std::string> { "--version" }) {
        std::fputs("version: stand-in\n", stderr);
        std::_Exit(0);
    }

    ToolCall call = parse(arguments, known);
    call.model = call.value("--model", "");
    std::error_code failure;
    if (fs::file_size(call.model, failure) == 0 || failure)
        failTool("cannot load the model");
    if (!fs::is_regular_file(call.value("--binary-file", ""), failure))
        failTool("cannot read the prompt");
    call.prompt = contents(call.value("--binary-file", ""));
    return call;
}

void writeOut(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (written < 0)
            std::_Exit(1);
        bytes.remove_prefix(static_cast<size_t>(written));
    }
}
