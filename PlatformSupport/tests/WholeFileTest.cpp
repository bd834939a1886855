// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/WholeFile.h>

#include <FileSizeLimit.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <TemporaryFolder.h>

#include <array>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using namespace PlatformSupport;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class WholeFile : public testing::Test {
protected:
    void write(std::string_view bytes) const { folder_.write("file", bytes); }

    TestSupport::TemporaryFolder folder_;
    const fs::path file_ = folder_ / "file";
};

std::error_code failure(const std::function<void()>& action)
{
    try {
        action();
    } catch (const fs::filesystem_error& error) {
        return error.code();
    }
    return {};
}

} // namespace

TEST_F(WholeFile, IsReadToItsEnd)
{
    const std::string bytes("with a \0 inside", 15);
    write(bytes);
    EXPECT_EQ(readFile(file_, 100), bytes);
    EXPECT_EQ(readFile(file_, bytes.size()), bytes);
}

TEST_F(WholeFile, CanBeEmpty)
{
    write("");
    EXPECT_EQ(readFile(file_, 0), "");
}

TEST_F(WholeFile, IsRefusedBeyondTheLimit)
{
    write("12345");
    EXPECT_EQ(failure([&] { readFile(file_, 4); }), std::errc::file_too_large);
    // Not even the memory for it is taken.
    fs::resize_file(file_, uintmax_t { 1 } << 40);
    EXPECT_EQ(failure([&] { readFile(file_, 4); }), std::errc::file_too_large);
}

TEST_F(WholeFile, IsNothingButARegularFile)
{
    EXPECT_EQ(failure([&] { readFile(file_, 10); }), std::errc::no_such_file_or_directory);
    EXPECT_EQ(failure([&] { readFile(folder_.path(), 10); }), std::errc::is_a_directory);
    EXPECT_EQ(failure([&] { readFile("/dev/zero", 10); }), std::errc::invalid_argument);
    ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0);
    EXPECT_EQ(failure([&] { readFile(file_, 10); }), std::errc::invalid_argument);
}

TEST_F(WholeFile, IsReadThroughALink)
{
    write("content");
    fs::create_symlink("file", folder_ / "link");
    EXPECT_EQ(readFile(folder_ / "link", 10), "content");
}

TEST_F(WholeFile, IsMadeOfThePiecesInOrder)
{
    const std::array<std::string_view, 3> pieces { "one, ", "", "two" };
    replaceFile(file_, pieces, Durability::content);
    EXPECT_EQ(readFile(file_, 100), "one, two");
    EXPECT_THAT(folder_.names(), ElementsAre("file"));
}

TEST_F(WholeFile, TakesTheOldOnesPlaceForTheUserAlone)
{
    write("old and longer");
    fs::permissions(file_, fs::perms::all);
    replaceFile(file_, "new", Durability::replacement);
    EXPECT_EQ(readFile(file_, 100), "new");
    EXPECT_EQ(fs::status(file_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_THAT(folder_.names(), ElementsAre("file"));
}

TEST_F(WholeFile, TakesALinksPlaceAndLeavesWhatItLeadTo)
{
    write("old");
    const fs::path link = folder_ / "link";
    fs::create_symlink("file", link);
    replaceFile(link, "new", Durability::content);
    EXPECT_FALSE(fs::is_symlink(link));
    EXPECT_EQ(readFile(link, 10), "new");
    EXPECT_EQ(readFile(file_, 10), "old");
}

TEST_F(WholeFile, CanLieInTheCurrentFolder)
{
    const fs::path before = fs::current_path();
    fs::current_path(folder_.path());
    replaceFile("file", "here", Durability::replacement);
    fs::current_path(before);
    EXPECT_EQ(readFile(file_, 10), "here");
}

TEST_F(WholeFile, StaysAsItWasOnAFullDisk)
{
    write("old");
    std::error_code error;
    {
        const TestSupport::FileSizeLimit limit(1000);
        error = failure([&] { replaceFile(file_, std::string(1001, 'x'), Durability::replacement); });
    }
    EXPECT_EQ(error, std::errc::file_too_large);
    EXPECT_EQ(readFile(file_, 10), "old");
    EXPECT_THAT(folder_.names(), ElementsAre("file"));
}

TEST_F(WholeFile, NeedsItsFolder)
{
    EXPECT_EQ(failure([&] { replaceFile(folder_ / "none" / "file", "new", Durability::content); }),
        std::errc::no_such_file_or_directory);
    write("a file");
    EXPECT_EQ(failure([&] { replaceFile(file_ / "file", "new", Durability::content); }), std::errc::not_a_directory);
}

TEST_F(WholeFile, TakesNoFoldersPlace)
{
    fs::create_directory(file_);
    EXPECT_EQ(failure([&] { replaceFile(file_, "new", Durability::content); }), std::errc::is_a_directory);
    EXPECT_TRUE(fs::is_directory(file_));
    EXPECT_THAT(folder_.names(), ElementsAre("file"));
}

TEST_F(WholeFile, CanHaveThatMuchOfAName)
{
    const fs::path tooLong = folder_ / std::string(250, 'x');
    EXPECT_EQ(failure([&] { replaceFile(tooLong, "new", Durability::content); }), std::errc::filename_too_long);
    EXPECT_THAT(folder_.names(), IsEmpty());
}

TEST(UnfinishedReplacement, IsKnownByItsName)
{
    EXPECT_TRUE(isUnfinishedReplacement(".some.json.a1B2c3.unfinished"));
    EXPECT_FALSE(isUnfinishedReplacement("some.json.a1B2c3.unfinished"));
    EXPECT_FALSE(isUnfinishedReplacement(".some.json"));
    EXPECT_FALSE(isUnfinishedReplacement(""));
}

TEST(SynchroniseFolder, NeedsAFolder)
{
    synchroniseFolder(fs::temp_directory_path());
    synchroniseFolder("");
    EXPECT_EQ(failure([] { synchroniseFolder("/dev/null"); }), std::errc::not_a_directory);
}
