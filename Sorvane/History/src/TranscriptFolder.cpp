// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TranscriptFolder.h"

#include "TranscriptCoding.h"

#include <PlatformSupport/WholeFile.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace Sorvane {

namespace fs = std::filesystem;

namespace {

// The longest text that a day of dictation can give is a few megabytes.
constexpr size_t maximumFileSize = size_t { 256 } << 20;

constexpr mode_t onlyForTheUser = 0700;

// Not fs::remove(), which takes an empty folder for a file.
bool removeFile(const fs::path& file)
{
    return ::unlink(file.c_str()) == 0;
}

} // namespace

TranscriptFolder::TranscriptFolder(fs::path path)
    : path_(std::move(path))
{
}

void TranscriptFolder::create() const
{
    if (path_.has_parent_path())
        fs::create_directories(path_.parent_path());
    if (::mkdir(path_.c_str(), onlyForTheUser) != 0 && !(errno == EEXIST && fs::is_directory(path_)))
        throw fs::filesystem_error("cannot create folder", path_, std::error_code(errno, std::generic_category()));
}

std::vector<fs::path> TranscriptFolder::list() const
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(path_)) {
        const std::string name = entry.path().filename();
        if (PlatformSupport::isUnfinishedReplacement(name))
            removeFile(entry.path());
        else if (!name.starts_with('.') && entry.path().extension() == ".json")
            files.push_back(entry.path());
    }
    std::ranges::sort(files);
    return files;
}

TranscriptEntry TranscriptFolder::read(const fs::path& file)
{
    return TranscriptCoding::decoded(PlatformSupport::readFile(file, maximumFileSize));
}

void TranscriptFolder::write(const TranscriptEntry& entry) const
{
    PlatformSupport::replaceFile(
        fileOf(entry.id), TranscriptCoding::encoded(entry), PlatformSupport::Durability::replacement);
}

bool TranscriptFolder::remove(const PlatformSupport::UUID& id) const
{
    return removeFile(fileOf(id));
}

fs::path TranscriptFolder::fileOf(const PlatformSupport::UUID& id) const
{
    return path_ / (id.text() + ".json");
}

} // namespace Sorvane
