// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Sorvane {

// The host of a page that came safely, in lower case: the location is https, with no port or 443, and its host is
// spelled with letters, digits, dots and hyphens. Nothing for any other.
//
// Example: "HTTPS://Mail.Example.com:443/inbox" gives "mail.example.com".
std::optional<std::string> secureWebHost(std::string_view location);

} // namespace Sorvane
