// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InstallerTestbed.h"

#include <PlatformSupport/SystemClock.h>
#include <Sorvane/CleanupFailure.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Sorvane {
namespace {

namespace fs = std::filesystem;
using testing::UnorderedElementsAre;

// What an archive may hold, and what becomes of one that holds something else. Each archive here is the very one that
// is asked for: only its content is wrong.
struct RuntimeArchive : testing::Test, TestClock<PlatformSupport::SystemClock>, InstallerTestbed {
    RuntimeArchive()
        : InstallerTestbed(clock)
    {
        fs::create_directory(folder / "outside");
        (void)folder.write("outside/secret", "secret");
    }

    // Nothing was installed, nothing is left of the attempt, and nothing outside was touched.
    void expectUntouched() const
    {
        EXPECT_THAT(names(), UnorderedElementsAre("downloads", "model.gguf"));
        EXPECT_EQ(folder.contents("outside/secret"), "secret");
        EXPECT_EQ(std::distance(fs::directory_iterator(folder / "outside"), fs::directory_iterator()), 1);
        EXPECT_THAT(
            folder.names(), UnorderedElementsAre("archive", "archive.tar.gz", "installation", "outside", "temporary"));
    }
};

TEST_F(RuntimeArchive, KeepsItsLinks)
{
    shell("cd llama-b10809 && echo library >libllama.so.0.4.0 && ln -s libllama.so.0.4.0 libllama.so.0"
          " && ln -s libllama.so.0 libllama.so");
    publishRuntime();
    prepare();
    expectInstalled();
    EXPECT_EQ(fs::read_symlink(files.runtime() / "libllama.so"), "libllama.so.0");
    EXPECT_EQ(fs::read_symlink(files.runtime() / "libllama.so.0"), "libllama.so.0.4.0");
    EXPECT_EQ(contents("runtime/libllama.so"), "library\n");
}

TEST_F(RuntimeArchive, IsRefusedWithAnotherTopLevel)
{
    shell("mv llama-b10809 llama-b10810");
    publishRuntime();
    EXPECT_EQ(failure(), InstallationError::Case::runtime);
    expectUntouched();
}

TEST_F(RuntimeArchive, IsRefusedWithoutATool)
{
    shell("rm llama-b10809/llama-tokenize");
    publishRuntime();
    EXPECT_EQ(failure(), InstallationError::Case::runtime);
    expectUntouched();
}

TEST_F(RuntimeArchive, IsRefusedWithAToolThatCannotBeExecuted)
{
    shell("chmod -x llama-b10809/llama-completion");
    publishRuntime();
    EXPECT_EQ(failure(), InstallationError::Case::runtime);
    expectUntouched();
}

TEST_F(RuntimeArchive, KeepsTheRuntimeThatItCannotReplace)
{
    prepare();
    shell("rm llama-b10809/llama-tokenize");
    publishRuntime();
    write(".runtime-needs-repair", "");
    EXPECT_EQ(failure(), InstallationError::Case::runtime);
    EXPECT_TRUE(isExecutableFile(files.generator()));
    EXPECT_TRUE(exists(".runtime-needs-repair"));
    EXPECT_THAT(names(),
        UnorderedElementsAre("downloads", "model.gguf", "runtime", ".runtime-b10809-ready", ".runtime-needs-repair"));
}

TEST_F(RuntimeArchive, IsRefusedWhenItIsNone)
{
    for (const std::string bytes : { "no archive", "" }) {
        publishRuntimeBytes(bytes);
        EXPECT_THROW(prepare(), std::exception) << bytes;
        expectUntouched();
    }
}

TEST_F(RuntimeArchive, IsRefusedWhenItIsCutOff)
{
    const std::string whole = folder.contents("archive.tar.gz");
    publishRuntimeBytes(whole.substr(0, whole.size() / 2));
    EXPECT_THROW(prepare(), CleanupFailure);
    expectUntouched();
}

TEST_F(RuntimeArchive, CannotWriteAboveItself)
{
    shell("echo evil >../outside/evil");
    publishRuntime("-czPf ../archive.tar.gz llama-b10809 ../outside/evil && rm ../outside/evil");
    EXPECT_THROW(prepare(), CleanupFailure);
    expectUntouched();
}

TEST_F(RuntimeArchive, CannotWriteAnywhere)
{
    shell("echo evil >../outside/evil");
    publishRuntime("-czPf ../archive.tar.gz llama-b10809 \"$(realpath ../outside/evil)\" && rm ../outside/evil");
    EXPECT_EQ(failure(), InstallationError::Case::runtime);
    expectUntouched();
}

// First the link, then a file by way of it.
TEST_F(RuntimeArchive, CannotWriteThroughALink)
{
    for (const char* const target : { "../../../outside", "\"$(realpath ../outside)\"" }) {
        shell(std::string("ln -s ") + target
            + " llama-b10809/way"
              " && tar -cf ../archive.tar llama-b10809 && rm llama-b10809/way"
              " && mkdir llama-b10809/way && echo evil >llama-b10809/way/evil"
              " && tar -rf ../archive.tar llama-b10809/way/evil && rm -r llama-b10809/way"
              " && gzip -f ../archive.tar");
        publishRuntimeBytes(folder.contents("archive.tar.gz"));
        EXPECT_THROW(prepare(), CleanupFailure) << target;
        expectUntouched();
    }
}

TEST_F(RuntimeArchive, IsRefusedWithALinkThatLeadsOut)
{
    for (const char* const target : { "../../../outside/secret", "/etc/passwd" }) {
        shell(std::string("ln -sf ") + target + " llama-b10809/libevil.so");
        publishRuntime();
        EXPECT_EQ(failure(), InstallationError::Case::runtime) << target;
        expectUntouched();
    }
}

TEST_F(RuntimeArchive, IsRefusedWithAHardLinkThatLeadsOut)
{
    shell("ln ../outside/secret llama-b10809/secret");
    publishRuntime("-czPf ../archive.tar.gz ../outside/secret llama-b10809");
    EXPECT_THROW(prepare(), CleanupFailure);
    expectUntouched();
}

TEST_F(RuntimeArchive, IsRefusedWithAPipe)
{
    shell("mkfifo llama-b10809/pipe");
    publishRuntime();
    EXPECT_EQ(failure(), InstallationError::Case::runtime);
    expectUntouched();
}

TEST_F(RuntimeArchive, IsRefusedWhenItsFolderIsALink)
{
    shell("mv llama-b10809 ../outside/runtime && ln -s ../../outside/runtime llama-b10809");
    publishRuntime();
    EXPECT_EQ(failure(), InstallationError::Case::runtime);
    EXPECT_THAT(names(), UnorderedElementsAre("downloads", "model.gguf"));
    EXPECT_TRUE(fs::exists(folder / "outside/runtime/llama-completion"));
}

} // namespace
} // namespace Sorvane
