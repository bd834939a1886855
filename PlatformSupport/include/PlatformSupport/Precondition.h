// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <source_location>
#include <string_view>

namespace PlatformSupport {

// Ends the process: a broken invariant of our own, not an error that anybody could handle. The message
// and the place go to standard error; it holds no user text.
[[noreturn]] void fatalError(std::string_view message, std::source_location where = std::source_location::current());

// A checked assertion that stays on in release builds.
inline void precondition(
    bool holds, std::string_view message, std::source_location where = std::source_location::current())
{
    if (!holds) [[unlikely]]
        fatalError(message, where);
}

} // namespace PlatformSupport
