// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <algorithm>
#include <set>
#include <string>

namespace Sorvane {

// Words that say what an item is about, in lower case.
using ContentWords = std::set<std::string>;

inline bool haveCommonWord(const ContentWords& a, const ContentWords& b)
{
    return std::ranges::any_of(a, [&](const std::string& word) { return b.contains(word); });
}

} // namespace Sorvane
