// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TestFiles.h"

#include <ModelStore/FoundationFileSystem.h>
#include <ModelStore/ModelStoreError.h>
#include <ModelStore/POSIXFileSystem.h>
#include <ModelStore/SHA256.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>

using namespace ModelStore;

namespace {

// What both file systems promise.
class FileSystemTest : public testing::TestWithParam<std::shared_ptr<FileSystem>> {
protected:
    std::string path(const std::string& name) const { return directory + "/" + name; }

    const FileSystem& files = *GetParam();
    std::string directory = freshDirectory();
};

std::string refusal(const std::function<void()>& operation)
{
    try {
        operation();
    } catch (const ModelStoreError& error) {
        EXPECT_EQ(error.which(), ModelStoreError::Case::io);
        return error.description();
    }
    return "none";
}

} // namespace

TEST_P(FileSystemTest, WritesAndReadsWholeFiles)
{
    Bytes content(200'000);
    for (size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<uint8_t>(i * 31 % 251);
    files.write(path("a"), bytesOf("an earlier and longer file"));
    files.write(path("a"), content);
    EXPECT_EQ(files.read(path("a")), content);
    EXPECT_EQ(files.size(path("a")), 200'000);
    files.write(path("a"), {});
    EXPECT_TRUE(files.read(path("a")).empty());
    EXPECT_ANY_THROW(files.read(path("absent")));
    EXPECT_ANY_THROW(files.read(directory));
    EXPECT_ANY_THROW(files.write(path("no/such/directory"), {}));
}

TEST_P(FileSystemTest, TellsWhatIsThere)
{
    files.write(path("a"), bytesOf("xyz"));
    EXPECT_TRUE(files.exists(path("a")));
    EXPECT_TRUE(files.exists(directory));
    EXPECT_FALSE(files.exists(path("b")));
    EXPECT_FALSE(files.size(path("b")).has_value());
}

TEST_P(FileSystemTest, MakesDirectoriesWithTheirAncestors)
{
    files.makeDirectory(path("x/y//z/"));
    files.makeDirectory(path("x/y/z"));
    EXPECT_TRUE(std::filesystem::is_directory(path("x/y/z")));
    files.write(path("file"), {});
    EXPECT_ANY_THROW(files.makeDirectory(path("file/below")));
}

TEST_P(FileSystemTest, MovesOverWhatIsThere)
{
    files.write(path("from"), bytesOf("new"));
    files.write(path("to"), bytesOf("old"));
    files.move(path("from"), path("to"));
    EXPECT_EQ(files.read(path("to")), bytesOf("new"));
    EXPECT_FALSE(files.exists(path("from")));
    EXPECT_ANY_THROW(files.move(path("from"), path("elsewhere")));
}

TEST_P(FileSystemTest, RemovesWithoutComplaint)
{
    files.write(path("a"), {});
    files.remove(path("a"));
    files.remove(path("a"));
    EXPECT_FALSE(files.exists(path("a")));
}

TEST_P(FileSystemTest, GivesAFilesDigest)
{
    const Bytes content(3'000'000, 'x');
    files.write(path("a"), content);
    EXPECT_EQ(
        files.digest(path("a")), (FileDigest { .size = 3'000'000, .sha256 = SHA256::hex(SHA256::digest(content)) }));
    EXPECT_ANY_THROW(files.digest(path("absent")));
}

INSTANTIATE_TEST_SUITE_P(, FileSystemTest,
    testing::Values(std::make_shared<FoundationFileSystem>(), std::make_shared<POSIXFileSystem>("/cache")),
    [](const auto& tested) { return tested.index == 0 ? "Foundation" : "POSIX"; });

TEST(FoundationFileSystem, LivesInTheUsersCachesUnlessToldOtherwise)
{
    ::setenv("XDG_CACHE_HOME", "/caches", 1);
    EXPECT_EQ(FoundationFileSystem().defaultCacheRoot(), "/caches");
    EXPECT_EQ(FoundationFileSystem("").defaultCacheRoot(), "/caches");
    EXPECT_EQ(FoundationFileSystem("/root").defaultCacheRoot(), "/root");
    ::setenv("HOME", "/home/user", 1);
    ::setenv("XDG_CACHE_HOME", "relative", 1);
    EXPECT_EQ(FoundationFileSystem().defaultCacheRoot(), "/home/user/.cache");
    ::unsetenv("XDG_CACHE_HOME");
    EXPECT_EQ(FoundationFileSystem().defaultCacheRoot(), "/home/user/.cache");
}

TEST(FoundationFileSystem, ListsDirectories)
{
    const FoundationFileSystem files;
    const std::string directory = freshDirectory();
    files.write(directory + "/b", {});
    files.makeDirectory(directory + "/a");
    std::vector<std::string> names = files.listDirectory(directory);
    std::ranges::sort(names);
    EXPECT_EQ(names, (std::vector<std::string> { "a", "b" }));
    EXPECT_TRUE(files.listDirectory(directory + "/absent").empty());
    files.remove(directory);
    EXPECT_FALSE(files.exists(directory));
}

TEST(FoundationFileSystem, NamesTheFileThatItCannotHash)
{
    EXPECT_EQ(refusal([] { (void)FoundationFileSystem().digest("/absent/file"); }), "cannot open /absent/file");
}

TEST(POSIXFileSystem, NamesTheCallThatFailed)
{
    const POSIXFileSystem files("/cache");
    const std::string directory = freshDirectory();
    EXPECT_EQ(files.defaultCacheRoot(), "/cache");
    EXPECT_TRUE(files.listDirectory(directory + "/..").empty());
    EXPECT_EQ(refusal([&] { files.read("/absent/file"); }), "open(/absent/file)");
    EXPECT_EQ(refusal([&] { files.read(directory); }), "read(" + directory + ")");
    EXPECT_EQ(refusal([&] { files.write("/absent/file", {}); }), "create(/absent/file)");
    EXPECT_EQ(refusal([&] { files.move("/absent/a", "/absent/b"); }), "rename(/absent/a -> /absent/b)");
    files.write(directory + "/file", {});
    EXPECT_EQ(refusal([&] { files.makeDirectory(directory + "/file/x/y"); }), "mkdir(" + directory + "/file/x)");
}
