// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/UUID.h>
#include <Sorvane/TranscriptHistory.h>

#include <TemporaryFolder.h>

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <string>

namespace Sorvane {

using TestSupport::TemporaryFolder;

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
