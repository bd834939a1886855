// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "ScriptedServer.h"

#include <PlatformSupport/BlockingPool.h>
#include <PlatformSupport/Clock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/Task.h>
#include <Sorvane/CleanupModelInstaller.h>
#include <Sorvane/CleanupProcess.h>
#include <Sorvane/InstallationError.h>

#include <TemporaryFolder.h>

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Sorvane {

// A base that comes before the testbed, which needs its clock.
template <typename Clock> struct TestClock {
    Clock clock;
};

// A folder to install in, a network that has the weights and an archive with the stand-ins for the tools, and all that
// an installer needs. The child processes are real.
class InstallerTestbed {
public:
    explicit InstallerTestbed(PlatformSupport::Clock& clock);

    // Runs a shell command in the folder "archive", whose content is what is packed.
    void shell(const std::string& command) const;

    // From now on the network has an archive of what lies in "archive", or these bytes for one.
    void publishRuntime(const std::string& tarArguments = "-czf ../archive.tar.gz *");
    void publishRuntimeBytes(const std::string& bytes);

    PlatformSupport::Task<> start();
    void prepare() { loop.finish(start()); }

    // The case of the installation error that it ends with.
    std::optional<InstallationError::Case> failure();

    // Whatever is asked of the network from now on fails.
    void cutOff() { server.files.clear(); }

    bool exists(const std::filesystem::path& name) const { return std::filesystem::exists(files.directory / name); }
    std::string contents(const std::filesystem::path& name) const { return folder.contents("installation" / name); }
    void write(const std::filesystem::path& name, const std::string& bytes) const;

    // All is there, proved, and nothing else is.
    void expectInstalled() const;

    std::set<std::string> names() const;

    TestSupport::TemporaryFolder folder;
    CleanupFiles files { folder / "installation" };
    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::RandomUUIDs uuids;
    ScriptedServer server;
    CleanupAssets assets;
    std::vector<double> fractions;
    CleanupProcess process;
    PlatformSupport::BlockingPool pool { 1 };
};

} // namespace Sorvane
