// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CleanupTestbed.h"

#include <CleanupStandIns.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace Sorvane {

namespace {

namespace fs = std::filesystem;

fs::path beside(const fs::path& tool, const char* ending)
{
    return tool.string() + ending;
}

std::string contents(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

} // namespace

CleanupTestbed::CleanupTestbed()
{
    TestSupport::installCleanupStandIns(files());
    fs::create_directory(folders().temporary);
    fs::create_directory(folders().home);
}

PlatformSupport::UserFolders CleanupTestbed::folders() const
{
    auto folders = PlatformSupport::UserFolders::fromEnvironment();
    folders.home = root_ / "home";
    folders.temporary = root_ / "temporary";
    return folders;
}

void CleanupTestbed::setCase(const fs::path& tool, const std::string& text)
{
    std::ofstream(beside(tool, ".case"), std::ios::binary) << text;
}

nlohmann::json CleanupTestbed::record(const fs::path& tool)
{
    return nlohmann::json::parse(contents(beside(tool, ".record")));
}

std::string CleanupTestbed::prompt(const fs::path& tool)
{
    return contents(beside(tool, ".prompt"));
}

bool CleanupTestbed::hasRun(const fs::path& tool)
{
    return fs::exists(beside(tool, ".record"));
}

void CleanupTestbed::announceLife(const fs::path& tool)
{
    if (::mkfifo(beside(tool, ".alive").c_str(), 0600) != 0)
        throw std::runtime_error("cannot make a named pipe");
}

std::vector<std::string> CleanupTestbed::temporaryFiles() const
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folders().temporary))
        names.push_back(entry.path().filename());
    return names;
}

ToolWatch::ToolWatch(const fs::path& tool)
    : pipe_(::open(beside(tool, ".alive").c_str(), O_RDONLY | O_CLOEXEC))
{
    char ready = 0;
    if (::read(pipe_.number(), &ready, 1) != 1)
        throw std::runtime_error("the tool did not get ready");
}

void ToolWatch::waitForEnd() const
{
    char ignored = 0;
    while (::read(pipe_.number(), &ignored, 1) > 0) { }
}

void waitUntilUncollected(const nlohmann::json& record)
{
    const std::string status = "/proc/" + std::to_string(record["process"].get<int>()) + "/stat";
    while (contents(status).find(") Z ") == std::string::npos)
        std::this_thread::yield();
}

CleanupProcess::Invocation ProcessTestbed::generator(std::string prompt) const
{
    return { .executable = files().generator(),
        .model = files().weights(),
        .prompt = std::move(prompt),
        .timeout = std::chrono::seconds(30),
        .arguments = std::nullopt };
}

PlatformSupport::Task<std::string> ProcessTestbed::start(CleanupProcess::Invocation invocation)
{
    return PlatformSupport::startDetachedTask(
        loop.executor(), [this, invocation = std::move(invocation)] { return process.run(invocation); });
}

std::string ProcessTestbed::run(CleanupProcess::Invocation invocation)
{
    return loop.finish(start(std::move(invocation)));
}

void advanceOnceAsleep(PlatformSupport::HandTurnedClock& clock, size_t sleepers, PlatformSupport::Clock::Duration by)
{
    while (clock.sleepers() < sleepers)
        std::this_thread::yield();
    clock.advance(by);
}

std::optional<CleanupFailure::Case> failureOf(const std::function<void()>& function)
{
    try {
        function();
        return std::nullopt;
    } catch (const CleanupFailure& failure) {
        return failure.which();
    }
}

} // namespace Sorvane
