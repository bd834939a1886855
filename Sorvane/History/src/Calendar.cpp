// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <Sorvane/Calendar.h>

#include <unicode/basictz.h>
#include <unicode/calendar.h>
#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>
#include <unicode/tztrans.h>

#include <utility>

namespace Sorvane {

namespace {

using std::chrono::milliseconds;

// ICU's dates are milliseconds since 1970.
double icuDate(Calendar::Date date)
{
    return static_cast<double>(std::chrono::floor<milliseconds>(date.time_since_epoch()).count());
}

std::optional<Calendar::Date> fromICU(double date)
{
    // A day inside the ends of what a Date holds, the years 1677 and 2262.
    constexpr auto furthest
        = std::chrono::duration_cast<milliseconds>(Calendar::Date::duration::max()).count() - 86'400'000;
    if (!(std::abs(date) < static_cast<double>(furthest)))
        return std::nullopt;
    return Calendar::Date(milliseconds(static_cast<int64_t>(date)));
}

} // namespace

// The ICU calendar keeps a date of its own, so each operation works on a copy.
struct Calendar::Implementation {
    icu::Locale locale;
    std::unique_ptr<icu::Calendar> calendar;
};

namespace {

// A copy of an ICU calendar, set to a date: what is done to it is done to its fields, and the first thing that goes
// wrong leaves it without a date.
class Cursor {
public:
    Cursor(const icu::Calendar& calendar, Calendar::Date date)
        : calendar_(calendar.clone())
    {
        calendar_->setTime(icuDate(date), status_);
    }

    std::optional<Calendar::Date> date()
    {
        const double date = calendar_->getTime(status_);
        return U_SUCCESS(status_) ? fromICU(date) : std::nullopt;
    }

    int32_t get(UCalendarDateFields field) { return calendar_->get(field, status_); }

    Cursor& toStartOfDay()
    {
        for (const auto field : { UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND })
            calendar_->set(field, 0);
        return settle();
    }

    Cursor& toStartOfWeek()
    {
        constexpr int32_t daysPerWeek = 7;
        const int32_t first = calendar_->getFirstDayOfWeek(status_);
        const int32_t daysSinceStart = (get(UCAL_DAY_OF_WEEK) - first + daysPerWeek) % daysPerWeek;
        return add(UCAL_DAY_OF_MONTH, -daysSinceStart).toStartOfDay();
    }

    Cursor& toStartOfMonth()
    {
        calendar_->set(UCAL_DAY_OF_MONTH, calendar_->getActualMinimum(UCAL_DAY_OF_MONTH, status_));
        return toStartOfDay();
    }

    Cursor& add(UCalendarDateFields field, int32_t amount)
    {
        calendar_->add(field, amount, status_);
        return *this;
    }

    const icu::Calendar& calendar() const { return *calendar_; }

private:
    // The fields are as they were set; this makes them those of a date again.
    Cursor& settle()
    {
        calendar_->getTime(status_);
        return *this;
    }

    std::unique_ptr<icu::Calendar> calendar_;
    UErrorCode status_ = U_ZERO_ERROR;
};

using Interval = Calendar::Interval;

std::optional<Interval> between(std::optional<Calendar::Date> start, std::optional<Calendar::Date> end)
{
    return start && end ? std::optional(Interval { *start, *end }) : std::nullopt;
}

// The moment at which the zone's clocks are changed next, or were changed last, from a date on.
std::optional<Calendar::Date> nextChange(const icu::TimeZone& zone, Calendar::Date date)
{
    const auto* const rules = dynamic_cast<const icu::BasicTimeZone*>(&zone);
    icu::TimeZoneTransition change;
    return rules && rules->getNextTransition(icuDate(date), false, change) ? fromICU(change.getTime()) : std::nullopt;
}

std::optional<Calendar::Date> lastChange(const icu::TimeZone& zone, Calendar::Date date)
{
    const auto* const rules = dynamic_cast<const icu::BasicTimeZone*>(&zone);
    icu::TimeZoneTransition change;
    return rules && rules->getPreviousTransition(icuDate(date), true, change) ? fromICU(change.getTime())
                                                                              : std::nullopt;
}

// An hour by the clock on the wall. Where the clocks are changed inside of it, it begins or ends there.
std::optional<Interval> hour(Cursor cursor)
{
    const auto date = cursor.date();
    if (!date)
        return std::nullopt;
    const auto sinceStart = std::chrono::minutes(cursor.get(UCAL_MINUTE))
        + std::chrono::seconds(cursor.get(UCAL_SECOND)) + milliseconds(cursor.get(UCAL_MILLISECOND));
    Interval hour { *date - sinceStart, *date - sinceStart + std::chrono::hours(1) };
    const auto& zone = cursor.calendar().getTimeZone();
    if (const auto change = lastChange(zone, *date); change && hour.contains(*change))
        hour.start = *change;
    if (const auto change = nextChange(zone, *date); change && hour.contains(*change))
        hour.end = *change;
    return hour;
}

std::string formatted(
    const icu::Calendar& calendar, const icu::Locale& locale, const char* skeleton, Calendar::Date date)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> patterns(
        icu::DateTimePatternGenerator::createInstance(locale, status));
    if (U_FAILURE(status))
        return {};
    icu::SimpleDateFormat format(patterns->getBestPattern(skeleton, status), locale, status);
    format.setCalendar(calendar);
    icu::UnicodeString text;
    format.format(icuDate(date), text);
    std::string result;
    return text.toUTF8String(result);
}

} // namespace

Calendar::Calendar(std::shared_ptr<const Implementation> implementation)
    : implementation_(std::move(implementation))
{
}

namespace {

std::unique_ptr<icu::Calendar> makeCalendar(const icu::Locale& locale, icu::TimeZone* ownedZone)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(ownedZone, locale, status));
    PlatformSupport::precondition(U_SUCCESS(status), "ICU has no calendars");
    // A time of day that the clocks skip is the moment of the change; one that they repeat is its first.
    calendar->setSkippedWallTimeOption(UCAL_WALLTIME_NEXT_VALID);
    calendar->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
    return calendar;
}

} // namespace

Calendar::Calendar(const std::string& locale, const std::string& timeZone)
{
    const icu::Locale icuLocale(locale.c_str());
    auto* const zone = icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZone));
    implementation_ = std::make_shared<Implementation>(Implementation { icuLocale, makeCalendar(icuLocale, zone) });
}

Calendar Calendar::current()
{
    const icu::Locale locale;
    return Calendar(std::make_shared<Implementation>(
        Implementation { locale, makeCalendar(locale, icu::TimeZone::detectHostTimeZone()) }));
}

std::optional<Calendar::Interval> Calendar::interval(Component component, Date date) const
{
    Cursor cursor(*implementation_->calendar, date);
    switch (component) {
    case Component::hour:
        return hour(std::move(cursor));
    case Component::day: {
        const auto start = cursor.toStartOfDay().date();
        return between(start, cursor.add(UCAL_DAY_OF_MONTH, 1).toStartOfDay().date());
    }
    case Component::weekOfYear: {
        const auto start = cursor.toStartOfWeek().date();
        return between(start, cursor.add(UCAL_WEEK_OF_YEAR, 1).toStartOfDay().date());
    }
    case Component::month: {
        const auto start = cursor.toStartOfMonth().date();
        return between(start, cursor.add(UCAL_MONTH, 1).toStartOfDay().date());
    }
    }
    PlatformSupport::fatalError("no such calendar component");
}

std::optional<Calendar::Date> Calendar::startOfDay(Date date) const
{
    return Cursor(*implementation_->calendar, date).toStartOfDay().date();
}

std::optional<Calendar::Date> Calendar::movedByDays(Date date, int days) const
{
    return Cursor(*implementation_->calendar, date).add(UCAL_DAY_OF_MONTH, days).date();
}

bool Calendar::isSameYear(Date a, Date b) const
{
    // Not the year of an era, which can begin in the middle of a year.
    const auto year = [this](Date date) { return Cursor(*implementation_->calendar, date).get(UCAL_EXTENDED_YEAR); };
    return year(a) == year(b);
}

std::string Calendar::monthName(Date date) const
{
    return formatted(*implementation_->calendar, implementation_->locale, "LLLL", date);
}

std::string Calendar::monthAndYear(Date date) const
{
    return formatted(*implementation_->calendar, implementation_->locale, "yMMMM", date);
}

} // namespace Sorvane
