// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <algorithm>
#include <string_view>

namespace ModelStore {

// 64 hexadecimal characters, in whatever case.
inline bool isDigest(std::string_view text)
{
    constexpr size_t length = 64;
    const auto isHexadecimal
        = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); };
    return text.size() == length && std::ranges::all_of(text, isHexadecimal);
}

} // namespace ModelStore
