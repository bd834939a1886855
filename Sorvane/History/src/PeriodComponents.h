// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/Calendar.h>
#include <Sorvane/TranscriptStatistics.h>

namespace Sorvane::TranscriptStatistics {

// What a period is one of, and what its chart has a bar for each of. All time is counted in months.
struct PeriodComponents {
    Calendar::Component length;
    Calendar::Component bucket;
};

PeriodComponents componentsOf(Period period);

} // namespace Sorvane::TranscriptStatistics
