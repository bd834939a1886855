// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TestHub.h"

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <numeric>
#include <stdexcept>

extern char** environ;

namespace TestSupport {

using PlatformSupport::FileDescriptor;

namespace {

namespace fs = std::filesystem;

struct Pipe {
    Pipe()
    {
        std::array<int, 2> ends {};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        reading = FileDescriptor(ends[0]);
        writing = FileDescriptor(ends[1]);
    }

    FileDescriptor reading;
    FileDescriptor writing;
};

pid_t spawn(std::vector<const char*> arguments, int input, int output)
{
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    arguments.push_back(nullptr);
    pid_t process = 0;
    const int error = ::posix_spawnp(
        &process, arguments.front(), &actions, nullptr, const_cast<char* const*>(arguments.data()), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("the hub cannot be started");
    return process;
}

fs::path put(const fs::path& path, std::string_view bytes)
{
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}

} // namespace

TestHub::TestHub(Scheme scheme)
{
    Pipe input;
    Pipe output;
    std::vector<const char*> arguments { "python3", "-B", HUB_PROGRAM, folder_.path().c_str() };
    if (scheme == Scheme::https)
        arguments.push_back("--https");
    process_ = spawn(arguments, input.reading.number(), output.writing.number());
    output.writing = FileDescriptor();
    input_ = std::move(input.writing);
    output_ = std::move(output.reading);
    std::signal(SIGPIPE, SIG_IGN);

    const auto greeting = nlohmann::json::parse(readLine());
    origin_ = greeting["origin"];
    if (scheme == Scheme::https)
        certificate_ = greeting["certificate"];
}

TestHub::~TestHub()
{
    input_ = FileDescriptor(); // at which it ends
    int status = 0;
    ::waitpid(process_, &status, 0);
}

fs::path TestHub::publish(
    const std::string& repo, const std::string& revision, const std::string& file, std::string_view bytes) const
{
    return put(folder_ / "models" / repo / revision / file, bytes);
}

fs::path TestHub::release(
    const std::string& repo, const std::string& tag, const std::string& file, std::string_view bytes) const
{
    return put(folder_ / "releases" / repo / tag / file, bytes);
}

void TestHub::play(std::string_view fault) const
{
    tell(nlohmann::json::parse(fault).dump()); // on one line
}

void TestHub::clear() const
{
    tell("\"clear\"");
}

std::vector<TestHub::Request> TestHub::log() const
{
    std::vector<Request> requests;
    for (const auto& entry : nlohmann::json::parse(tell("\"log\"")))
        requests.push_back({ .method = entry["method"],
            .path = entry["path"],
            .place = entry["place"],
            .status = entry["status"],
            .bytes = entry["bytes"],
            .headers = entry["headers"],
            .client = entry["client"] });
    return requests;
}

int64_t TestHub::bytesSent() const
{
    const auto requests = log();
    return std::accumulate(requests.begin(), requests.end(), int64_t { 0 },
        [](int64_t sum, const Request& request) { return sum + request.bytes; });
}

std::string TestHub::tell(std::string_view line) const
{
    const std::string text = std::string(line) + "\n";
    if (::write(input_.number(), text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        throw std::runtime_error("the hub is gone");
    return readLine();
}

std::string TestHub::readLine() const
{
    std::string line;
    char character = 0;
    while (::read(output_.number(), &character, 1) == 1) {
        if (character == '\n')
            return line;
        line += character;
    }
    throw std::runtime_error("the hub is gone");
}

} // namespace TestSupport
