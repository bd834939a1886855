// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Sorvane {

// Larger ones are not read: what a property list holds can take a multiple of its size.
inline constexpr size_t maximumAppOrderSize = 16 * 1024;

// A property list, XML or binary, that holds a list of texts.
//
// Throws StoredFormatError.
std::vector<std::string> decodedAppOrder(std::string_view propertyList);

} // namespace Sorvane
