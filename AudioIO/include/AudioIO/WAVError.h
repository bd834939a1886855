// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <stdexcept>
#include <string>

namespace AudioIO {

// Why bytes are not a WAV file that can be decoded.
class WAVError : public std::runtime_error {
public:
    enum class Case {
        unsupported, // a sound file in a sample format that is not decoded; description() names it
        notRIFF, // some other kind of file
        truncated // the file ends before its audio begins
    };

    static WAVError unsupported(const std::string& what) { return { Case::unsupported, what }; }
    static WAVError notRIFF() { return { Case::notRIFF, "not a RIFF/WAVE file" }; }
    static WAVError truncated() { return { Case::truncated, "truncated" }; }

    Case which() const noexcept { return which_; }
    std::string description() const { return what(); }

private:
    WAVError(Case which, const std::string& text)
        : std::runtime_error(text)
        , which_(which)
    {
    }

    Case which_;
};

} // namespace AudioIO
