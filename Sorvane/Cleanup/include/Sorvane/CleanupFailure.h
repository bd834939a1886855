// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <stdexcept>
#include <string>

namespace Sorvane {

// What can go wrong while a transcript is tidied.
class CleanupFailure : public std::runtime_error {
public:
    enum class Case {
        unavailable, // the tools or the weights are not in place
        invalidOutput, // what a tool wrote cannot be used
        processFailed, // a tool could not be prepared, was stopped, failed, or wrote bytes that are no text
        inputTooLong, // the transcript has too many tokens
    };

    explicit CleanupFailure(Case which);

    Case which() const noexcept { return which_; }
    std::string description() const { return what(); }

private:
    Case which_;
};

} // namespace Sorvane
