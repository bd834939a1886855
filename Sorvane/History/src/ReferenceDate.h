// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>

// Dates as the stored files have them: seconds since 2001-01-01 00:00 UTC, with fractions.
namespace Sorvane::ReferenceDate {

double seconds(PlatformSupport::Clock::Date date);

// A date gives the seconds it was read from back, but for those that it cannot hold: it knows nanoseconds, and the
// years from 1678 to 2261. What lies outside is brought to their ends.
PlatformSupport::Clock::Date date(double seconds);

} // namespace Sorvane::ReferenceDate
