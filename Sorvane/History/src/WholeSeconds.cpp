// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WholeSeconds.h"

#include <algorithm>
#include <cmath>

namespace Sorvane {

int64_t wholeSeconds(double seconds)
{
    constexpr double longest = 1e15; // beyond any recording, and exact in both types
    return seconds > 0 ? std::llround(std::min(seconds, longest)) : 0;
}

} // namespace Sorvane
