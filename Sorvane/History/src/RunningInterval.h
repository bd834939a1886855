// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/Calendar.h>

#include <optional>

namespace Sorvane {

// The intervals of many dates, one after the other. Dates that lie in the same day or month mostly come together, and
// the calendar is then asked only once.
class RunningInterval {
public:
    RunningInterval(const Calendar& calendar, Calendar::Component component)
        : calendar_(calendar)
        , component_(component)
    {
    }

    std::optional<Calendar::Interval> around(Calendar::Date date)
    {
        if (last_.contains(date))
            return last_;
        const auto interval = calendar_.interval(component_, date);
        last_ = interval.value_or(Calendar::Interval {});
        return interval;
    }

private:
    const Calendar& calendar_;
    Calendar::Component component_;
    Calendar::Interval last_ {}; // at first one that holds no date
};

} // namespace Sorvane
