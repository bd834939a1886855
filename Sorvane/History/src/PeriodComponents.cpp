// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "PeriodComponents.h"

#include <PlatformSupport/Precondition.h>

namespace Sorvane::TranscriptStatistics {

PeriodComponents componentsOf(Period period)
{
    using enum Calendar::Component;
    switch (period) {
    case Period::today:
        return { day, hour };
    case Period::week:
        return { weekOfYear, day };
    case Period::month:
        return { month, day };
    case Period::lifetime:
        return { month, month };
    }
    PlatformSupport::fatalError("no such period");
}

} // namespace Sorvane::TranscriptStatistics
