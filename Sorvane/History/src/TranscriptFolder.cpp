// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TranscriptFolder.h"

#include "TranscriptCoding.h"

#include <PlatformSupport/WholeFile.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <exception>
#include <functional>
#include <optional>
#include <system_error>
#include <thread>
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

std::optional<StoredTranscript> readTranscript(const fs::path& file)
{
    try {
        auto entry = TranscriptCoding::decoded(PlatformSupport::readFile(file, maximumFileSize));
        const auto contribution = LifetimeStatistics::contribution(entry);
        return StoredTranscript { std::move(entry), contribution };
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

// Threads beside this one, to do the same. A file takes some 20 microseconds; a thread is worth it from a few hundred
// on.
std::vector<std::jthread> startHelpers(size_t files, const std::function<void()>& work)
{
    constexpr size_t filesPerHelper = 500;
    constexpr size_t most = 3;
    const size_t processors = std::max(std::thread::hardware_concurrency(), 1U);
    std::vector<std::jthread> helpers;
    try {
        while (helpers.size() < std::min({ files / filesPerHelper, processors - 1, most }))
            helpers.emplace_back(work);
    } catch (const std::system_error&) { // no more threads to be had: fewer do it, too
    }
    return helpers;
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

std::vector<std::string> TranscriptFolder::list() const
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path_)) {
        std::string name = entry.path().filename();
        if (PlatformSupport::isUnfinishedReplacement(name))
            removeFile(entry.path());
        else if (!name.starts_with('.') && name.ends_with(".json"))
            names.push_back(std::move(name));
    }
    std::ranges::sort(names);
    return names;
}

TranscriptFolder::Contents TranscriptFolder::readAll(const std::vector<std::string>& names) const
{
    std::vector<std::optional<StoredTranscript>> read(names.size());
    std::atomic<size_t> next = 0;
    const auto readSome = [&] {
        for (size_t i = next++; i < names.size(); i = next++)
            read[i] = readTranscript(path_ / names[i]);
    };
    {
        const auto helpers = startHelpers(names.size(), readSome);
        readSome();
    }
    Contents contents;
    for (auto& transcript : read) {
        if (transcript)
            contents.transcripts.push_back(std::move(*transcript));
        else
            contents.isComplete = false;
    }
    return contents;
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

void TranscriptFolder::synchronise() const
{
    try {
        PlatformSupport::synchroniseFolder(path_);
    } catch (const std::exception&) { // the files are gone; that they stay so can only be hoped for
    }
}

fs::path TranscriptFolder::fileOf(const PlatformSupport::UUID& id) const
{
    return path_ / (id.text() + ".json");
}

} // namespace Sorvane
