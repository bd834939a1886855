// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>
#include <Sorvane/Calendar.h>
#include <Sorvane/TranscriptEntry.h>

#include <compare>
#include <string>
#include <vector>

namespace Sorvane {

enum class HistoryOrder { newestFirst, oldestFirst };

// One group of the transcripts' table: those of today, of yesterday, of a month.
struct HistorySection {
    enum class Kind { month, upcoming, today, yesterday, previous7Days, previous30Days };

    struct ID {
        Kind kind = Kind::today;
        PlatformSupport::Clock::Date month {}; // of a month alone: its first moment

        auto operator<=>(const ID&) const = default;
    };

    ID id;
    std::string title; // "Today"; of a month its name, with the year if that is not this year
    std::vector<TranscriptEntry> entries; // at least one

    // The entries in their groups, both in this order. Those after today come first if the newest are first, else last.
    // A pure function; any thread.
    static std::vector<HistorySection> grouped(
        const TranscriptList& entries, HistoryOrder order, PlatformSupport::Clock::Date now, const Calendar& calendar);
};

} // namespace Sorvane
