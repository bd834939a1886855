// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/UUID.h>
#include <Sorvane/TranscriptHistory.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace Sorvane {

// A folder that is gone after the test.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path())
    {
        std::string pattern = (parent / "history-XXXXXX").string();
        if (!::mkdtemp(pattern.data()))
            throw std::runtime_error("no temporary folder");
        path_ = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& path() const { return path_; }

    void write(const std::string& name, std::string_view bytes) const
    {
        std::ofstream(path_ / name, std::ios::binary) << bytes;
    }

    std::string contents(const std::string& name) const
    {
        std::ifstream file(path_ / name, std::ios::binary);
        return { std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>() };
    }

    std::set<std::string> names() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_))
            names.insert(entry.path().filename());
        return names;
    }

private:
    std::filesystem::path path_;
};

// "00000000-0000-0000-0000-000000000001" and so on.
inline PlatformSupport::UUID numberedUUID(uint32_t number)
{
    char text[37];
    std::snprintf(text, sizeof text, "00000000-0000-0000-0000-%012X", number);
    return PlatformSupport::UUID::parse(text).value();
}

class NumberedUUIDs final : public PlatformSupport::UUIDSource {
public:
    explicit NumberedUUIDs(uint32_t first = 1)
        : next_(first)
    {
    }
    PlatformSupport::UUID next() override { return numberedUUID(next_++); }

private:
    uint32_t next_;
};

// "2026-03-29 01:30:00" in UTC.
inline PlatformSupport::Clock::Date utc(const char* text)
{
    std::tm time {};
    const char* const end = ::strptime(text, "%Y-%m-%d %H:%M:%S", &time);
    if (!end || *end != '\0')
        throw std::invalid_argument(text);
    return std::chrono::system_clock::from_time_t(::timegm(&time));
}

// A transcript of 2026-01-01, so many seconds after midnight.
inline NewTranscript transcript(std::string text, int secondsAfterMidnight = 0)
{
    return { .text = std::move(text),
        .appName = "Editor",
        .bundleIdentifier = std::nullopt,
        .createdAt = utc("2026-01-01 00:00:00") + std::chrono::seconds(secondsAfterMidnight),
        .duration = 2.5,
        .harness = std::nullopt };
}

// The texts of the list, in its order, one a line.
inline std::string texts(const TranscriptList& entries)
{
    std::string texts;
    for (const auto& entry : entries)
        texts += entry.text + "\n";
    return texts;
}

} // namespace Sorvane
