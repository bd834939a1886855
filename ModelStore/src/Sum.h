// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Precondition.h>

#include <cstdint>

namespace ModelStore {

// Of numbers of bytes that are known to stand on a disk, or to fit on it.
inline int64_t sumOf(int64_t a, int64_t b)
{
    int64_t sum = 0;
    PlatformSupport::precondition(!__builtin_add_overflow(a, b, &sum), "the bytes of a model are beyond counting");
    return sum;
}

} // namespace ModelStore
