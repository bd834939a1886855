// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string>
#include <string_view>

namespace Regex {

// The text in Unicode's compatibility composition (NFKC): "ﬁ" becomes "fi", and "e" with a combining acute becomes
// "é". What is no UTF-8 becomes U+FFFD.
std::string nfkc(std::string_view text);

} // namespace Regex
