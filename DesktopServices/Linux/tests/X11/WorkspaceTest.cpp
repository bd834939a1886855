// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "OtherProgram.h"
#include "X11/X11Testing.h"
#include "X11/X11Workspace.h"

#include <TemporaryFolder.h>
#include <unistd.h>

#include <fstream>

namespace DesktopLinux {

namespace {

namespace fs = std::filesystem;
using Application = std::shared_ptr<DesktopServices::RunningApplication>;
using TestSupport::TemporaryFolder;

class WorkspaceTest : public X11Testing {
protected:
    void turnUntilInFront(const OtherProgram& program)
    {
        loop.turnUntil([&] {
            const auto front = workspace.frontmostApplication();
            return front && front->processIdentifier() == program.process();
        });
    }

    // The programs that came to the front, as far as the workspace told.
    std::vector<Application> activated;
    X11Workspace workspace { connection };
    X11Workspace::Subscription subscription
        = workspace.observeActivation([this](const Application& application) { activated.push_back(application); });
};

void install(std::string_view identifier, std::string_view contents)
{
    const fs::path folder = fs::path(std::getenv("XDG_DATA_HOME")) / "applications";
    fs::create_directories(folder);
    std::ofstream(folder / (std::string(identifier) + ".desktop")) << "[Desktop Entry]\nType=Application\n" << contents;
}

TEST_F(WorkspaceTest, KnowsTheProcessInFront)
{
    OtherProgram other;
    other.ask("window Other");
    turnUntilInFront(other);
    const auto front = workspace.frontmostApplication();
    EXPECT_EQ(front, workspace.frontmostApplication());
    EXPECT_FALSE(front->isTerminated());
    EXPECT_FALSE(front->isBuiltOnElectron());
    EXPECT_EQ(workspace.ownProcessIdentifier(), ::getpid());
}

TEST_F(WorkspaceTest, HasNothingInFrontWithoutWindows)
{
    OtherProgram other;
    other.ask("window Other");
    turnUntilInFront(other);
    other.ask("close");
    loop.turnUntil([&] { return !workspace.frontmostApplication(); });
}

TEST_F(WorkspaceTest, TellsEachProgramThatComesToTheFront)
{
    OtherProgram first;
    OtherProgram second;
    first.ask("window First");
    loop.turnUntil([&] { return activated.size() == 1; });
    second.ask("window Second");
    loop.turnUntil([&] { return activated.size() == 2; });
    activated[0]->activate();
    loop.turnUntil([&] { return activated.size() == 3; });
    EXPECT_EQ(activated[0]->processIdentifier(), first.process());
    EXPECT_EQ(activated[1]->processIdentifier(), second.process());
    EXPECT_EQ(activated[2], activated[0]);
}

TEST_F(WorkspaceTest, SaysNothingWhenAnotherWindowOfTheSameProgramComesToTheFront)
{
    OtherProgram first;
    OtherProgram second;
    first.ask("window First");
    first.ask("window First");
    loop.turnUntil([&] { return activated.size() == 1; });
    second.ask("window Second");
    loop.turnUntil([&] { return !activated.empty() && activated.back()->processIdentifier() == second.process(); });
    EXPECT_EQ(activated.size(), 2u);
}

TEST_F(WorkspaceTest, ActivatesAnotherWindowWhenTheLatestIsClosed)
{
    OtherProgram first;
    OtherProgram second;
    first.ask("window First");
    first.ask("window First");
    loop.turnUntil([&] { return activated.size() == 1; });
    second.ask("window Second");
    loop.turnUntil([&] { return activated.size() == 2; });
    first.ask("close");
    activated[0]->activate();
    turnUntilInFront(first);
}

TEST_F(WorkspaceTest, IsNotHeldUpByAFrozenProgram)
{
    OtherProgram frozen;
    OtherProgram second;
    frozen.ask("window Frozen");
    loop.turnUntil([&] { return activated.size() == 1; });
    second.ask("window Second");
    turnUntilInFront(second);
    frozen.freeze();
    loop.turnUntil([&] { return activated.size() == 2; });
    activated.front()->activate();
    EXPECT_FALSE(activated.front()->isTerminated());
    turnUntilInFront(frozen);
}

TEST_F(WorkspaceTest, KnowsWhenAProgramHasEnded)
{
    OtherProgram other;
    other.ask("window Other");
    turnUntilInFront(other);
    const auto front = workspace.frontmostApplication();
    other.kill();
    EXPECT_TRUE(front->isTerminated());
    front->activate();
    loop.turnUntil([&] { return !workspace.frontmostApplication(); });
}

TEST_F(WorkspaceTest, BelievesTheServerMoreThanTheProgram)
{
    OtherProgram liar;
    liar.ask("window Liar");
    EXPECT_EQ(liar.ask("process 1"), "set");
    turnUntilInFront(liar);
}

TEST_F(WorkspaceTest, NamesAProgramByItsDesktopFile)
{
    install("org.example.Writer", "Name=Writer\nStartupWMClass=Soffice\n");
    OtherProgram other;
    other.ask("window soffice");
    turnUntilInFront(other);
    EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier(), "org.example.Writer");
    EXPECT_EQ(workspace.frontmostApplication()->localizedName(), "Writer");
}

TEST_F(WorkspaceTest, BelievesTheIdentifierThatAWindowCarries)
{
    install("org.example.Terminal", "Name=Terminal\n");
    for (const auto* property : { "_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE" }) {
        OtherProgram program;
        program.ask("window other");
        program.ask(std::string("property ") + property + " org.example.Terminal");
        X11Workspace later(connection);
        loop.turnUntil([&] {
            const auto front = later.frontmostApplication();
            return front && front->processIdentifier() == program.process();
        });
        EXPECT_EQ(later.frontmostApplication()->bundleIdentifier(), "org.example.Terminal") << property;
    }
}

TEST_F(WorkspaceTest, NamesAProgramByItsExecutable)
{
    install("org.example.Tool", "Name=Tool\nExec=/opt/tool %U\n");
    const TemporaryFolder folder;
    fs::copy_file(OtherProgram_PROGRAM, folder / "tool");
    OtherProgram other(folder / "tool");
    other.ask("window other");
    turnUntilInFront(other);
    EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier(), "org.example.Tool");
}

TEST_F(WorkspaceTest, IdentifiesAProgramWithoutADesktopFileByItsWindowClass)
{
    OtherProgram other;
    other.ask("window XyzTerm");
    turnUntilInFront(other);
    EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier(), "xyzterm");
    EXPECT_EQ(workspace.frontmostApplication()->localizedName(), "XyzTerm");
}

TEST_F(WorkspaceTest, KnowsProgramsBuiltOnABrowserEngine)
{
    const TemporaryFolder folder;
    fs::copy_file(OtherProgram_PROGRAM, folder / "code");
    folder.write("chrome_100_percent.pak", std::string_view());
    OtherProgram other(folder / "code");
    other.ask("window Code");
    turnUntilInFront(other);
    EXPECT_TRUE(workspace.frontmostApplication()->isBuiltOnElectron());
}

TEST_F(WorkspaceTest, GivesApplicationsThatOutliveIt)
{
    OtherProgram other;
    other.ask("window Other");
    Application application;
    {
        X11Workspace shortLived(connection);
        loop.turnUntil([&] { return (application = shortLived.frontmostApplication()) != nullptr; });
    }
    application->activate();
    EXPECT_EQ(application->processIdentifier(), other.process());
}

} // namespace

} // namespace DesktopLinux
