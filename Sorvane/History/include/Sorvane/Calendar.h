// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>

#include <memory>
#include <optional>
#include <string>

namespace Sorvane {

// How a user cuts time into days, weeks and months, and names them: a calendar, a time zone and a language.
//
// A value; any thread. What the calendar cannot produce is absent.
class Calendar {
public:
    using Date = PlatformSupport::Clock::Date;

    enum class Component { hour, day, weekOfYear, month };

    struct Interval {
        Date start;
        Date end; // behind its last moment

        bool operator==(const Interval&) const = default;
        bool contains(Date date) const { return start <= date && date < end; }
    };

    // Named as ICU does: "en_GB", "ar_SA@calendar=islamic-umalqura"; "Europe/Berlin". An unknown time zone is UTC.
    Calendar(const std::string& locale, const std::string& timeZone);

    // The user's, as the system has it now.
    static Calendar current();

    // The hour, day, week or month that holds the date. A day on which the clocks are changed has another length.
    std::optional<Interval> interval(Component component, Date date) const;

    // Midnight, or the day's first moment where there is no midnight.
    std::optional<Date> startOfDay(Date date) const;

    // The same time of day so many days later.
    std::optional<Date> movedByDays(Date date, int days) const;

    bool isSameYear(Date a, Date b) const;

    // The month's full name by itself, "November", and with its year, "November 2024", in the user's language.
    std::string monthName(Date date) const;
    std::string monthAndYear(Date date) const;

private:
    struct Implementation;
    explicit Calendar(std::shared_ptr<const Implementation> implementation);

    std::shared_ptr<const Implementation> implementation_;
};

} // namespace Sorvane
