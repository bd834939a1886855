// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/FileDescriptor.h>
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/Task.h>
#include <PlatformSupport/UserFolders.h>
#include <PlatformSupport/UUID.h>
#include <Sorvane/CleanupFailure.h>
#include <Sorvane/CleanupFiles.h>
#include <Sorvane/CleanupProcess.h>

#include <nlohmann/json.hpp>
#include <TemporaryFolder.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace Sorvane {

// A folder that holds an installation with the stand-ins for both tools, weights of the right size that are all holes,
// a home, and a place for temporary files. It is removed with everything in it.
class CleanupTestbed {
public:
    CleanupTestbed();

    CleanupFiles files() const { return { root_ / "installation" }; }
    PlatformSupport::UserFolders folders() const;

    // What a tool does instead of its work; tests/tools/ToolDouble.h has the words.
    static void setCase(const std::filesystem::path& tool, const std::string& text);

    // What it saw when it ran last.
    static nlohmann::json record(const std::filesystem::path& tool);
    static std::string prompt(const std::filesystem::path& tool);
    static bool hasRun(const std::filesystem::path& tool);

    // From now on the tool waits, when it starts, for somebody to watch it.
    static void announceLife(const std::filesystem::path& tool);

    // Names of the temporary files that are there.
    std::vector<std::string> temporaryFiles() const;

private:
    TestSupport::TemporaryFolder root_;
};

// Watches a tool whose life is announced. It is there once the tool is ready for signals.
class ToolWatch {
public:
    explicit ToolWatch(const std::filesystem::path& tool);

    // Waits until neither the tool nor any child of it is left.
    void waitForEnd() const;

private:
    PlatformSupport::FileDescriptor pipe_;
};

// Waits until the tool that left the record has ended and its parent has not noticed yet.
void waitUntilUncollected(const nlohmann::json& record);

// A testbed, and all that a run of a tool needs.
struct ProcessTestbed : CleanupTestbed {
    explicit ProcessTestbed(PlatformSupport::Clock& clock)
        : process(clock, uuids, folders())
    {
    }

    CleanupProcess::Invocation generator(std::string prompt = "hello") const;

    PlatformSupport::Task<std::string> start(CleanupProcess::Invocation invocation);

    // What the tool wrote.
    std::string run(CleanupProcess::Invocation invocation);

    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::RandomUUIDs uuids;
    CleanupProcess process;
};

// Turns the clock once so many sleep by it.
void advanceOnceAsleep(PlatformSupport::HandTurnedClock& clock, size_t sleepers, PlatformSupport::Clock::Duration by);

// The failure that the function ends with.
std::optional<CleanupFailure::Case> failureOf(const std::function<void()>& function);

} // namespace Sorvane
