// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WebHost.h"

#include <PlatformSupport/Text.h>
#include <Regex/Letters.h>

#include <algorithm>

namespace Sorvane {

namespace {

constexpr std::string_view afterScheme = "://";

bool isHostCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '-';
}

// "user:password@host:port", of which only the last two count.
std::optional<std::string_view> authorityOfSecureLocation(std::string_view location)
{
    const size_t schemeLength = location.find(afterScheme);
    if (schemeLength == std::string_view::npos
        || !PlatformSupport::asciiCaseEqual(location.substr(0, schemeLength), "https"))
        return std::nullopt;
    const auto rest = location.substr(schemeLength + afterScheme.size());
    const auto authority = rest.substr(0, rest.find_first_of("/?#"));
    if (authority.find('\\') != std::string_view::npos) // which some read as a slash, and some do not
        return std::nullopt;
    return authority.substr(authority.rfind('@') + 1); // npos + 1 is 0
}

} // namespace

std::optional<std::string> secureWebHost(std::string_view location)
{
    const auto authority = authorityOfSecureLocation(location);
    if (!authority)
        return std::nullopt;
    const size_t colon = authority->find(':');
    const auto host = authority->substr(0, colon);
    const auto port = colon == std::string_view::npos ? "" : authority->substr(colon + 1);
    const bool isOrdinary
        = !host.empty() && std::all_of(host.begin(), host.end(), isHostCharacter) && (port.empty() || port == "443");
    if (!isOrdinary)
        return std::nullopt;
    return Regex::lowercased(host);
}

} // namespace Sorvane
