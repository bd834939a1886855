// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ReferenceDate.h"

#include <cmath>

namespace Sorvane::ReferenceDate {

namespace {

using PlatformSupport::Clock;
using std::chrono::nanoseconds;
using WholeSeconds = std::chrono::time_point<Clock::Date::clock, std::chrono::seconds>;

constexpr WholeSeconds reference = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1);

// Inside of what a date can hold by some months, so that the month around one is a pair of dates, too.
constexpr WholeSeconds earliest = std::chrono::sys_days(std::chrono::year(1678) / 1 / 1);
constexpr WholeSeconds latest = std::chrono::sys_days(std::chrono::year(2262) / 1 / 1);

} // namespace

double seconds(Clock::Date date)
{
    const auto whole = std::chrono::floor<std::chrono::seconds>(date);
    const auto rest = date - whole;
    return static_cast<double>((whole - reference).count()) + static_cast<double>(rest.count()) / 1e9;
}

Clock::Date date(double seconds)
{
    if (!(seconds > static_cast<double>((earliest - reference).count())))
        return earliest;
    if (seconds >= static_cast<double>((latest - reference).count()))
        return latest;

    const double whole = std::floor(seconds);
    const auto rest = nanoseconds(std::llround((seconds - whole) * 1e9));
    return reference + std::chrono::seconds(static_cast<int64_t>(whole)) + rest;
}

} // namespace Sorvane::ReferenceDate
