// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Ostrel/Tunables.h>

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace Ostrel {

namespace {

// The number that the whole text stands for, with an optional sign, else `fallback`.
template <typename Number> Number parsedOr(Number fallback, const char* text)
{
    std::string_view digits = text != nullptr ? text : "";
    if (digits.starts_with('+') && !digits.starts_with("+-"))
        digits.remove_prefix(1);
    Number value {};
    const char* end = digits.data() + digits.size();
    const auto [stopped, error] = std::from_chars(digits.data(), end, value);
    return error == std::errc() && stopped == end ? value : fallback;
}

} // namespace

Tunables Tunables::parsed(const char* boundarySearch, const char* batchWindows)
{
    const Tunables defaults;
    return { .boundarySearch = parsedOr(defaults.boundarySearch, boundarySearch),
        .batchWindows = parsedOr(defaults.batchWindows, batchWindows) };
}

const Tunables& Tunables::process()
{
    static const Tunables tunables = parsed(std::getenv("OSTREL_SEARCH"), std::getenv("OSTREL_BATCH_WINDOWS"));
    return tunables;
}

} // namespace Ostrel
