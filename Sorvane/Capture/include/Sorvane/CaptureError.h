// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <stdexcept>
#include <string>

namespace Sorvane {

// Why there is no recording. description() is what the user reads.
class CaptureError : public std::runtime_error {
public:
    enum class Case {
        conversion, // what the microphone gave could not be turned into samples
        unavailable // there is no microphone, or it vanished
    };

    static CaptureError conversion(const std::string& text);
    static CaptureError unavailable();

    Case which() const noexcept { return which_; }
    std::string description() const { return what(); }

private:
    CaptureError(Case which, const std::string& text)
        : std::runtime_error(text)
        , which_(which)
    {
    }

    Case which_;
};

} // namespace Sorvane
