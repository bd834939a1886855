// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <stdexcept>
#include <string>

namespace AudioIO {

// What can go wrong with a file of audio. description() is one clause without the file's name, fit to stand
// after "path: ".
class AudioIOError : public std::runtime_error {
public:
    enum class Case {
        decodeFailed, // the file cannot be opened, is no audio, or its bytes do not decode; also: cannot be created
        unsupported // the audio cannot be encoded as asked
    };

    AudioIOError(Case which, const std::string& text)
        : std::runtime_error(text)
        , which_(which)
    {
    }

    static AudioIOError decodeFailed(const std::string& text) { return { Case::decodeFailed, text }; }
    static AudioIOError unsupported(const std::string& text) { return { Case::unsupported, text }; }

    Case which() const noexcept { return which_; }
    std::string description() const { return what(); }

private:
    Case which_;
};

} // namespace AudioIO
