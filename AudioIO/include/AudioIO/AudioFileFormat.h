// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace AudioIO {

// How a file of audio is encoded.
class AudioFileFormat {
public:
    enum class Case {
        aac, // MPEG-4 AAC in an MPEG-4 container
        wav, // 16-bit integer RIFF/WAVE
        pcm // 16-bit little-endian integers in a CAF or AIFF container
    };

    static constexpr AudioFileFormat aac(int64_t bitRate) { return { Case::aac, bitRate }; } // bits per second
    static constexpr AudioFileFormat wav() { return { Case::wav, 0 }; }
    static constexpr AudioFileFormat pcm() { return { Case::pcm, 0 }; }

    // The format that a path's extension stands for, in any case and without its dot: "wav", "M4A". AAC
    // gets 128000 bits per second. Absent for an extension that says nothing about the format.
    static std::optional<AudioFileFormat> inferred(std::string_view pathExtension);

    constexpr Case which() const { return which_; }
    constexpr int64_t bitRate() const { return bitRate_; } // bits per second for aac, 0 for the others

    bool operator==(const AudioFileFormat&) const = default;

private:
    constexpr AudioFileFormat(Case which, int64_t bitRate)
        : which_(which)
        , bitRate_(bitRate)
    {
    }

    Case which_;
    int64_t bitRate_;
};

} // namespace AudioIO
