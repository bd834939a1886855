// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "UnpackedArchive.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <TemporaryFolder.h>

#include <fstream>

namespace Sorvane {
namespace {

namespace fs = std::filesystem;

// What an archive brought, with one file where it should be.
struct Staging : testing::Test {
    Staging()
    {
        fs::create_directories(folder / "staging/runtime/lib");
        std::ofstream(folder / "staging/runtime/tool") << "tool";
        fs::create_directory(folder / "outside");
        std::ofstream(folder / "outside/secret") << "secret";
    }

    void link(const fs::path& name, const fs::path& target) const { fs::create_symlink(target, runtime / name); }
    bool isAccepted() const { return holdsOnlyFolder(folder / "staging", "runtime"); }

    TestSupport::TemporaryFolder folder;
    fs::path runtime = folder / "staging/runtime";
};

TEST_F(Staging, IsAcceptedWithFilesAndFolders)
{
    EXPECT_TRUE(isAccepted());
}

TEST_F(Staging, IsAcceptedWithLinksWithin)
{
    link("lib/libllama.so", "libllama.so.0");
    link("lib/libllama.so.0", "../tool");
    link("here", ".");
    link("nowhere", "lib/missing");
    link("there-and-back", "../runtime/tool");
    EXPECT_TRUE(isAccepted());
}

TEST_F(Staging, IsRefusedWithALinkThatLeadsOut)
{
    for (const char* const target : { "../../outside/secret", "../../outside", "..", "../missing", "lib/../../..",
             "/etc/passwd", "/", "../runtime-too" }) {
        link("out", target);
        EXPECT_FALSE(isAccepted()) << target;
        fs::remove(runtime / "out");
    }
}

TEST_F(Staging, IsRefusedWithAnAbsoluteLinkToItself)
{
    link("tool-too", runtime / "tool");
    EXPECT_FALSE(isAccepted());
}

TEST_F(Staging, IsRefusedWithALinkThatLeadsOutByAnother)
{
    link("here", "lib");
    link("lib/up", "../..");
    EXPECT_FALSE(isAccepted());
}

TEST_F(Staging, IsRefusedWithLinksInACircle)
{
    link("one", "two");
    link("two", "one");
    EXPECT_FALSE(isAccepted());
}

TEST_F(Staging, IsRefusedWithWhatIsNoFile)
{
    ASSERT_EQ(::mkfifo((runtime / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(isAccepted());
}

TEST_F(Staging, IsRefusedWithAStrangerBesideTheFolder)
{
    std::ofstream(folder / "staging/stranger") << "?";
    EXPECT_FALSE(isAccepted());
}

TEST_F(Staging, IsRefusedWhenTheFolderHasAnotherName)
{
    fs::rename(runtime, folder / "staging/other");
    EXPECT_FALSE(isAccepted());
}

TEST_F(Staging, IsRefusedWhenTheFolderIsALink)
{
    fs::rename(runtime, folder / "outside/runtime");
    fs::create_symlink("../outside/runtime", runtime);
    EXPECT_FALSE(isAccepted());
}

TEST_F(Staging, IsRefusedWithoutAnything)
{
    fs::remove_all(runtime);
    EXPECT_FALSE(isAccepted());
}

} // namespace
} // namespace Sorvane
