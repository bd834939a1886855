// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace MLProgram {

// A row of scratch memory that the calling thread keeps for its next call. It holds garbage, and the next call with
// the same T takes it back.
template <typename T> std::span<T> scratchRow(size_t count)
{
    thread_local std::vector<T> row;
    if (row.size() < count)
        row.resize(count);
    return std::span(row).first(count);
}

} // namespace MLProgram
