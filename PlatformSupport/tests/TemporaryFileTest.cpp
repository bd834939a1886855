// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/TemporaryFile.h>

#include <FileSizeLimit.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <TemporaryFolder.h>

namespace PlatformSupport {

namespace {

namespace fs = std::filesystem;

class TemporaryFileTest : public testing::Test {
protected:
    TestSupport::TemporaryFolder folder_;
};

} // namespace

TEST_F(TemporaryFileTest, GoesWithTheObject)
{
    {
        TemporaryFile file(folder_ / "a" / "b");
        file.write("words");
        EXPECT_EQ(fs::file_size(file.path()), 5);
        EXPECT_EQ(file.path().parent_path(), folder_ / "a" / "b");
        const TemporaryFile moved = std::move(file);
        EXPECT_TRUE(fs::exists(moved.path()));
    }
    EXPECT_TRUE(fs::is_empty(folder_ / "a" / "b"));
}

TEST_F(TemporaryFileTest, IsTheUsersAlone)
{
    const TemporaryFile file(folder_.path());
    struct stat status { };
    ASSERT_EQ(::stat(file.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600);
}

TEST_F(TemporaryFileTest, TakesAnotherFilesPlace)
{
    folder_.write("wanted", "old");
    {
        TemporaryFile file(folder_.path());
        file.write("new");
        file.moveTo(folder_ / "wanted");
    }
    EXPECT_EQ(folder_.contents("wanted"), "new");
    EXPECT_EQ(folder_.names(), (std::set<std::string> { "wanted" }));
}

TEST_F(TemporaryFileTest, MovesToAnotherDisk)
{
    const fs::path elsewhere = "/dev/shm";
    struct stat here { };
    struct stat there { };
    if (::stat(elsewhere.c_str(), &there) != 0 || ::stat(folder_.path().c_str(), &here) != 0
        || here.st_dev == there.st_dev)
        GTEST_SKIP() << "there is no other disk";
    const TestSupport::TemporaryFolder other(elsewhere);
    {
        TemporaryFile file(folder_.path());
        file.write("words");
        file.moveTo(other / "wanted");
    }
    EXPECT_EQ(other.contents("wanted"), "words");
    EXPECT_EQ(other.names(), (std::set<std::string> { "wanted" }));
    EXPECT_TRUE(folder_.names().empty());
}

TEST_F(TemporaryFileTest, StaysWhereItIsWhenItCannotBeMoved)
{
    TemporaryFile file(folder_.path());
    EXPECT_THROW(file.moveTo(folder_ / "absent" / "wanted"), fs::filesystem_error);
    EXPECT_TRUE(fs::exists(file.path()));
}

TEST_F(TemporaryFileTest, SaysThatTheDiskIsFull)
{
    TemporaryFile file(folder_.path());
    const TestSupport::FileSizeLimit limit(10);
    EXPECT_THROW(file.write("more than ten bytes"), fs::filesystem_error);
}

TEST_F(TemporaryFileTest, ClearsAwayWhatAKilledProcessLeft)
{
    folder_.write(".Xy12zA.temporary", "half");
    folder_.write("mine.temporary", "not hidden");
    const TemporaryFile first(folder_.path());
    const TemporaryFile second(folder_.path());
    EXPECT_TRUE(fs::exists(first.path()));
    EXPECT_EQ(folder_.names(),
        (std::set<std::string> { "mine.temporary", first.path().filename(), second.path().filename() }));
}

} // namespace PlatformSupport
