// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Programs/DesktopEntries.h"

#include <gtest/gtest.h>
#include <TemporaryFolder.h>

namespace DesktopLinux {

namespace {

namespace fs = std::filesystem;
using TestSupport::TemporaryFolder;

DesktopEntry parsed(std::string_view contents, std::string_view locale = "C.UTF-8")
{
    return parseDesktopEntry("id", contents, locale).value_or(DesktopEntry());
}

const std::string text = "[Desktop Entry]\nType=Application\nName=Text Editor\nName[de]=Texteditor\n"
                         "Name[de_AT]=Österreichischer Editor\nName[sr@latin]=Uređivač\nName[sr]=Уређивач\n"
                         "Exec=/usr/bin/edit %U\nStartupWMClass=Edit\n";

TEST(DesktopEntry, TellsNameWindowClassAndProgram)
{
    const auto entry = parsed(text);
    EXPECT_EQ(entry.identifier, "id");
    EXPECT_EQ(entry.name, "Text Editor");
    EXPECT_EQ(entry.windowClass, "Edit");
    EXPECT_EQ(entry.program, "edit");
}

TEST(DesktopEntry, IsNamedInTheUsersLanguage)
{
    EXPECT_EQ(parsed(text, "de_DE.UTF-8").name, "Texteditor");
    EXPECT_EQ(parsed(text, "de_AT.UTF-8").name, "Österreichischer Editor");
    EXPECT_EQ(parsed(text, "de").name, "Texteditor");
    EXPECT_EQ(parsed(text, "sr_RS@latin").name, "Uređivač");
    EXPECT_EQ(parsed(text, "sr_RS.UTF-8").name, "Уређивач");
    EXPECT_EQ(parsed(text, "fr_FR.UTF-8").name, "Text Editor");
    EXPECT_EQ(parsed(text, "").name, "Text Editor");
}

TEST(DesktopEntry, TakesTheKeysOfItsOwnGroupOnly)
{
    EXPECT_EQ(parsed(text + "[Desktop Action new]\nName=New Window\nExec=other\n").name, "Text Editor");
    EXPECT_EQ(parsed("Name=Before\n" + text).name, "Text Editor");
}

TEST(DesktopEntry, RefusesWhatIsNoProgramOrHidden)
{
    EXPECT_FALSE(parseDesktopEntry("id", "[Desktop Entry]\nType=Link\nName=Page\n", ""));
    EXPECT_FALSE(parseDesktopEntry("id", text + "Hidden=true\n", ""));
    EXPECT_FALSE(parseDesktopEntry("id", "[Desktop Entry]\nType=Application\n", ""));
    EXPECT_FALSE(parseDesktopEntry("id", "", ""));
    EXPECT_FALSE(parseDesktopEntry("id", std::string("\0\xff[=]\n[[[=", 10), ""));
}

TEST(DesktopEntry, FindsTheProgramInAnyCommandLine)
{
    const auto program = [](const std::string& line) {
        return parsed("[Desktop Entry]\nType=Application\nName=A\nExec=" + line + "\n").program;
    };
    EXPECT_EQ(program("foot"), "foot");
    EXPECT_EQ(program("/opt/x/foot --server"), "foot");
    EXPECT_EQ(program("\"/opt/my programs/foot\" %F"), "foot");
    EXPECT_EQ(program("env GDK_BACKEND=x11 /usr/bin/foot %U"), "foot");
    EXPECT_EQ(program("\"unfinished"), "unfinished");
    EXPECT_EQ(program(""), "");
    EXPECT_EQ(program("env A=b"), "");
}

TEST(DesktopEntry, ReplacesEscapesAndDamagedLetters)
{
    EXPECT_EQ(parsed("[Desktop Entry]\nType=Application\nName=a\\sb\\\\c\\\n").name, "a b\\c\\");
    EXPECT_EQ(parsed("[Desktop Entry]\r\nType=Application\r\nName=a\xff\r\n").name, "a\xEF\xBF\xBD");
}

class DesktopEntriesTest : public testing::Test {
protected:
    void write(const fs::path& file, std::string_view name, std::string_view more = "")
    {
        fs::create_directories((folder / file).parent_path());
        folder.write(file, "[Desktop Entry]\nType=Application\nName=" + std::string(name) + "\n" + std::string(more));
    }

    TemporaryFolder folder;
    DesktopEntries entries { { folder / "user", folder / "missing", folder / "system" }, "" };
};

TEST_F(DesktopEntriesTest, TakesTheUsersFileBeforeTheSystems)
{
    write("system/org.example.Edit.desktop", "System's");
    write("user/org.example.Edit.desktop", "User's");
    ASSERT_TRUE(entries.withIdentifier("org.example.Edit"));
    EXPECT_EQ(entries.withIdentifier("org.example.Edit")->name, "User's");
    EXPECT_FALSE(entries.withIdentifier("org.example.edit"));
    EXPECT_FALSE(entries.withIdentifier(""));
}

TEST_F(DesktopEntriesTest, NamesAFileInAFolderAfterBoth)
{
    write("system/kde/konsole.desktop", "Konsole");
    EXPECT_TRUE(entries.withIdentifier("kde-konsole"));
}

TEST_F(DesktopEntriesTest, FindsByWindowClassWhateverItsCase)
{
    write("system/a.desktop", "A", "StartupWMClass=Navigator\n");
    ASSERT_TRUE(entries.withWindowClass("navigator"));
    EXPECT_EQ(entries.withWindowClass("navigator")->identifier, "a");
    EXPECT_FALSE(entries.withWindowClass(""));
    EXPECT_FALSE(entries.withWindowClass("b"));
}

TEST_F(DesktopEntriesTest, FindsByProgramUnlessSeveralRunIt)
{
    write("system/a.desktop", "A", "Exec=a\n");
    write("system/b.desktop", "B", "Exec=python3 b\n");
    write("system/c.desktop", "C", "Exec=python3 c\n");
    ASSERT_TRUE(entries.withProgram("a"));
    EXPECT_EQ(entries.withProgram("a")->identifier, "a");
    EXPECT_FALSE(entries.withProgram("python3"));
    EXPECT_FALSE(entries.withProgram(""));
}

TEST_F(DesktopEntriesTest, NoticesWhatIsInstalledLater)
{
    fs::create_directories(folder / "user");
    EXPECT_FALSE(entries.withIdentifier("late"));
    write("user/late.desktop", "Late");
    fs::last_write_time(folder / "user", fs::file_time_type::clock::now() + std::chrono::seconds(1));
    EXPECT_TRUE(entries.withIdentifier("late"));
}

TEST_F(DesktopEntriesTest, SkipsWhatCannotBeRead)
{
    write("system/good.desktop", "Good");
    fs::create_directories(folder / "system/folder.desktop");
    fs::create_symlink(folder / "nowhere", folder / "system/dangling.desktop");
    folder.write("system/.desktop", "");
    EXPECT_TRUE(entries.withIdentifier("good"));
}

} // namespace

} // namespace DesktopLinux
