// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <limits>

namespace Sorvane {

// Counts come from files, too: a sum that does not fit stays at the end that it ran into.
inline int64_t wordSum(int64_t a, int64_t b)
{
    int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        return b > 0 ? std::numeric_limits<int64_t>::max() : std::numeric_limits<int64_t>::min();
    return sum;
}

} // namespace Sorvane
