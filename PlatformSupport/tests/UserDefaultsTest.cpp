// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/FileUserDefaults.h>

#include <gtest/gtest.h>
#include <TemporaryFolder.h>

namespace PlatformSupport {
namespace {

namespace fs = std::filesystem;

class FileUserDefaultsTest : public ::testing::Test {
protected:
    void write(const std::string& text) const
    {
        fs::create_directories(path.parent_path());
        folder.write("Sorvane/defaults.json", text);
    }

    TestSupport::TemporaryFolder folder;
    const fs::path path = folder / "Sorvane/defaults.json";
};

TEST_F(FileUserDefaultsTest, AreEmptyAndWriteNothingBeforeTheFirstChange)
{
    const FileUserDefaults defaults(path);
    EXPECT_FALSE(defaults.contains("shortcut"));
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(FileUserDefaultsTest, AreThereAgainNextTime)
{
    FileUserDefaults defaults(path);
    defaults.setBoolean("automaticallyCopy", false);
    defaults.setString("shortcut", "⌥ Space");
    const FileUserDefaults again(path);
    EXPECT_EQ(again.boolean("automaticallyCopy"), false);
    EXPECT_EQ(again.string("shortcut"), "⌥ Space");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(FileUserDefaultsTest, KeepWhatTheyDoNotKnow)
{
    write(R"({"window": {"width": 960}, "count": 3})");
    FileUserDefaults(path).setBoolean("automaticallyCopy", true);
    EXPECT_EQ(nlohmann::json::parse(folder.contents("Sorvane/defaults.json")),
        nlohmann::json::parse(R"({"automaticallyCopy": true, "window": {"width": 960}, "count": 3})"));
}

TEST_F(FileUserDefaultsTest, CountAValueOfAnotherTypeAsAbsent)
{
    write(R"({"automaticallyCopy": 1, "shortcut": true, "none": null})");
    const FileUserDefaults defaults(path);
    EXPECT_EQ(defaults.boolean("automaticallyCopy"), std::nullopt);
    EXPECT_EQ(defaults.string("shortcut"), std::nullopt);
    EXPECT_TRUE(defaults.contains("none"));
}

TEST_F(FileUserDefaultsTest, SetADamagedFileAsideBeforeTheyReplaceIt)
{
    for (const std::string damaged : { "", "{\"a\": ", "[1]", "\xff\xfe" }) {
        write(damaged);
        FileUserDefaults defaults(path);
        EXPECT_FALSE(defaults.contains("a"));
        EXPECT_EQ(folder.contents("Sorvane/defaults.json"), damaged);
        defaults.setBoolean("a", true);
        EXPECT_EQ(folder.contents("Sorvane/defaults.json.damaged"), damaged);
        EXPECT_EQ(FileUserDefaults(path).boolean("a"), true);
    }
}

TEST_F(FileUserDefaultsTest, HoldAChangeThatCannotBeWritten)
{
    folder.write("Sorvane", "a file where the folder should be");
    FileUserDefaults defaults(path);
    defaults.setBoolean("a", true);
    EXPECT_EQ(defaults.boolean("a"), true);
    EXPECT_TRUE(defaults.writeError());
    fs::remove(folder / "Sorvane");
    defaults.setBoolean("a", true);
    EXPECT_FALSE(defaults.writeError());
    EXPECT_EQ(FileUserDefaults(path).boolean("a"), true);
}

TEST(MemoryUserDefaults, CountAValueOfAnotherTypeAsAbsent)
{
    MemoryUserDefaults defaults;
    defaults.setString("a", "true");
    defaults.setBoolean("b", true);
    EXPECT_EQ(defaults.boolean("a"), std::nullopt);
    EXPECT_EQ(defaults.string("b"), std::nullopt);
    EXPECT_EQ(defaults.boolean("b"), true);
    EXPECT_TRUE(defaults.contains("a"));
    EXPECT_FALSE(defaults.contains("c"));
}

} // namespace
} // namespace PlatformSupport
