// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/MappedFile.h>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <string>
#include <string_view>

using PlatformSupport::MappedFile;

namespace {

std::filesystem::path writeFile(const std::string& name, std::string_view content)
{
    const auto path = std::filesystem::path(testing::TempDir()) / name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

std::string_view text(const MappedFile& file)
{
    return { reinterpret_cast<const char*>(file.bytes().data()), file.bytes().size() };
}

std::error_code refusal(const std::filesystem::path& path)
{
    try {
        const MappedFile file(path);
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_EQ(error.path1(), path);
        return error.code();
    }
    return {};
}

} // namespace

TEST(MappedFile, HoldsTheFilesBytes)
{
    const auto path = writeFile("mapped", "some bytes");
    const MappedFile file(path);
    std::filesystem::remove(path);
    EXPECT_EQ(text(file), "some bytes");
}

TEST(MappedFile, KeepsItsBytesWhenItMoves)
{
    MappedFile first(writeFile("first", "first"));
    MappedFile second(writeFile("second", "second"));
    const auto* const place = first.bytes().data();
    second = std::move(first);
    const MappedFile third = std::move(second);
    EXPECT_EQ(third.bytes().data(), place);
    EXPECT_EQ(text(third), "first");
}

TEST(MappedFile, TakesAnEmptyFile)
{
    EXPECT_TRUE(MappedFile(writeFile("empty", "")).bytes().empty());
}

TEST(MappedFile, SaysWhyAFileCannotBeMapped)
{
    const std::filesystem::path directory = testing::TempDir();
    EXPECT_EQ(refusal(directory / "absent"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(refusal(directory), std::errc::is_a_directory);

    const auto pipe = directory / "pipe";
    std::filesystem::remove(pipe);
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(refusal(pipe), std::errc::invalid_argument);
}
