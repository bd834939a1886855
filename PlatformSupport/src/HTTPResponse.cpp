// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/HTTPResponse.h>
#include <PlatformSupport/Text.h>
#include <PlatformSupport/UTF8.h>

#include <algorithm>

namespace PlatformSupport {

std::string HTTPResponse::text() const
{
    return repairedUTF8(body);
}

std::optional<std::string> HTTPResponse::header(std::string_view name) const
{
    const auto found
        = std::ranges::find_if(headers, [&](const HTTPHeader& header) { return asciiCaseEqual(header.name, name); });
    return found == headers.end() ? std::nullopt : std::optional(found->value);
}

} // namespace PlatformSupport
