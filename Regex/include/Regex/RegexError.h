// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <stdexcept>
#include <string>

namespace Regex {

// A pattern that cannot be compiled. The text names the engine's reason and the place in the pattern, and holds
// nothing of the pattern itself.
class RegexError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    std::string description() const { return what(); }
};

} // namespace Regex
