// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <stdexcept>

namespace Ostrel {

// JSON that reads well but does not hold what is asked of it: a key is absent or has the wrong type.
class DecodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace Ostrel
