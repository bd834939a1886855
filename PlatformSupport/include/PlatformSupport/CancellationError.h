// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <exception>

namespace PlatformSupport {

// Thrown where a cancelled task notices that it is cancelled. It ends the task without a word to the user.
class CancellationError : public std::exception {
public:
    const char* what() const noexcept override { return "cancelled"; }
};

} // namespace PlatformSupport
