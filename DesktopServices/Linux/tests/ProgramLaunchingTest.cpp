// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopLinux/ProgramLaunching.h>
#include <PlatformSupport/Environment.h>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <TemporaryFolder.h>

#include <csignal>
#include <cstdlib>
#include <fstream>

namespace DesktopLinux {

namespace {

namespace fs = std::filesystem;

// A system where only the programs exist that a test installs. Each tells its name and its arguments when it runs.
class ProgramLaunchingTest : public testing::Test {
protected:
    ProgramLaunchingTest()
    {
        EXPECT_EQ(::mkfifo((folder / "told").c_str(), 0600), 0);
        fs::create_directory(folder / "bin");
        fs::create_symlink("/usr/bin/setsid", folder / "bin/setsid");
        ::setenv("PATH", (folder / "bin").c_str(), 1);
    }
    ~ProgramLaunchingTest() override { ::setenv("PATH", oldPath_.c_str(), 1); }

    void install(const std::string& program)
    {
        folder.write("bin/" + program, "#!/bin/sh\necho " + program + " \"$@\" >" + (folder / "told").string() + "\n");
        fs::permissions(folder / "bin" / program, fs::perms::owner_all);
    }

    // A program that tells which signals are kept from it.
    void installTeller(const std::string& program)
    {
        folder.write("bin/" + program,
            "#!/bin/sh\nwhile read -r key value; do [ $key != SigBlk: ] || echo $value >" + (folder / "told").string()
                + "; done </proc/$$/status\n");
        fs::permissions(folder / "bin" / program, fs::perms::owner_all);
    }

    // Waits until a program has run.
    std::string told()
    {
        std::ifstream pipe(folder / "told");
        std::string line;
        std::getline(pipe, line);
        return line;
    }

    TestSupport::TemporaryFolder folder;
    ProgramLaunching launching;

private:
    std::string oldPath_ = PlatformSupport::environmentVariable("PATH").value_or("");
};

const std::string settings = "x-apple.systempreferences:com.apple.preference.security?Privacy_";

TEST_F(ProgramLaunchingTest, OpensAWebPageAsItIs)
{
    install("xdg-open");
    const std::string page = "https://example.org/a b?c='d'&e=$(f)";
    EXPECT_TRUE(launching.open(page));
    EXPECT_EQ(told(), "xdg-open " + page);
}

TEST_F(ProgramLaunchingTest, OpensTheSettingsOfTheDesktopThatIsThere)
{
    install("pavucontrol");
    EXPECT_TRUE(launching.open(settings + "Microphone"));
    EXPECT_EQ(told(), "pavucontrol --tab=4");
    install("gnome-control-center");
    EXPECT_TRUE(launching.open(settings + "Microphone"));
    EXPECT_EQ(told(), "gnome-control-center sound");
    EXPECT_TRUE(launching.open(settings + "Accessibility"));
    EXPECT_EQ(told(), "gnome-control-center universal-access");
}

TEST_F(ProgramLaunchingTest, KeepsNoSignalFromThePrograms)
{
    installTeller("xdg-open");
    sigset_t termination;
    sigset_t before;
    ::sigemptyset(&termination);
    ::sigaddset(&termination, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &termination, &before);
    EXPECT_TRUE(launching.open("https://example.org"));
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(told(), "0000000000000000");
}

TEST_F(ProgramLaunchingTest, SaysWhenNobodyTakesIt)
{
    EXPECT_FALSE(launching.open("https://example.org"));
    EXPECT_FALSE(launching.open(settings + "Microphone"));
}

TEST_F(ProgramLaunchingTest, RefusesWhatIsNoPage)
{
    install("xdg-open");
    for (const auto* url : { "", "/bin/sh", "file:///etc/passwd", "javascript:alert(1)", "x-apple.systempreferences:" })
        EXPECT_FALSE(launching.open(url)) << url;
}

} // namespace

} // namespace DesktopLinux
