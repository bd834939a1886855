// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InstallerTestbed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace Sorvane {

namespace fs = std::filesystem;

namespace {

PlatformSupport::UserFolders foldersIn(const TestSupport::TemporaryFolder& folder)
{
    auto folders = PlatformSupport::UserFolders::fromEnvironment();
    folders.temporary = folder / "temporary";
    return folders;
}

} // namespace

InstallerTestbed::InstallerTestbed(PlatformSupport::Clock& clock)
    : process(clock, uuids, foldersIn(folder))
{
    fs::create_directory(folder / "temporary");
    fs::create_directories(folder / "archive/llama-b10809");
    for (const char* const tool : { "llama-completion", "llama-tokenize" })
        fs::copy_file(fs::path(CLEANUP_TOOLS_DIRECTORY) / tool, folder / "archive/llama-b10809" / tool);
    assets.runtimeVersion = "b10809";
    assets.weights = server.serve("https://example.org/s1-mini-q4_k_m.gguf", "the weights");
    publishRuntime();
}

void InstallerTestbed::shell(const std::string& command) const
{
    const std::string script = "cd '" + (folder / "archive").string() + "' && " + command;
    if (std::system(script.c_str()) != 0)
        throw std::runtime_error("failed: " + command);
}

void InstallerTestbed::publishRuntime(const std::string& tarArguments)
{
    shell("tar " + tarArguments);
    publishRuntimeBytes(folder.contents("archive.tar.gz"));
}

void InstallerTestbed::publishRuntimeBytes(const std::string& bytes)
{
    assets.runtime = server.serve("https://example.org/llama-b10809-bin-ubuntu-x64.tar.gz", bytes);
}

PlatformSupport::Task<> InstallerTestbed::start()
{
    return PlatformSupport::startDetachedTask(loop.executor(), [this]() -> PlatformSupport::Awaitable<void> {
        const CleanupModelInstaller installer(files.directory, { server.download() }, assets,
            { .process = process, .uuids = uuids, .files = pool.executor() });
        co_await installer.prepare([this](double fraction) { fractions.push_back(fraction); });
    });
}

std::optional<InstallationError::Case> InstallerTestbed::failure()
{
    try {
        prepare();
        return std::nullopt;
    } catch (const InstallationError& error) {
        return error.which();
    }
}

void InstallerTestbed::write(const fs::path& name, const std::string& bytes) const
{
    const fs::path path = files.directory / name;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

void InstallerTestbed::expectInstalled() const
{
    EXPECT_THAT(names(), testing::UnorderedElementsAre(".runtime-b10809-ready", "downloads", "model.gguf", "runtime"));
    EXPECT_EQ(contents(".runtime-b10809-ready"), "b10809\n");
    EXPECT_EQ(contents("model.gguf"), "the weights");
    EXPECT_EQ(sha256(contents("downloads/llama-b10809-bin-ubuntu-x64.tar.gz")), assets.runtime.sha256);
    for (const auto& tool : { files.generator(), files.tokeniser() })
        EXPECT_TRUE(isExecutableFile(tool)) << tool;
}

std::set<std::string> InstallerTestbed::names() const
{
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(files.directory))
        names.insert(entry.path().filename());
    return names;
}

} // namespace Sorvane
