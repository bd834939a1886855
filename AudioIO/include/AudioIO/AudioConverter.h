// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <memory>
#include <span>
#include <vector>

namespace AudioIO {

// Turns a stream of audio, piece by piece, into one channel at another rate.
//
// The pieces may be of any size: together they give the same samples as all at once, up to rounding. Time is not
// shifted: the first sample given back belongs to the first frame put in. Mono at the same rate passes through bit for
// bit.
//
// One thread at a time; not tied to any.
class AudioConverter {
public:
    struct Format {
        int sampleRate; // Hz
        int channels;
    };

    // How several channels become one. The weights add up to at most 1, so full scale stays full scale.
    enum class Mix {
        speakerPlaces, // up to 8 as their usual places ask (the bass channel of 5.1 is left out), more by their mean
        mean // each counts the same: the inputs of a device have no places
    };

    // Errors: AudioIOError decodeFailed, for a rate or a number of channels that cannot be converted
    AudioConverter(Format from, int toSampleRate, Mix mix = Mix::speakerPlaces);
    AudioConverter(AudioConverter&&) noexcept;
    AudioConverter& operator=(AudioConverter&&) noexcept;
    ~AudioConverter();

    // Takes whole frames and appends the mono samples that are ready: fewer than the rates promise, because the
    // filter holds back the last few milliseconds.
    //
    // Errors: AudioIOError decodeFailed
    void convert(std::span<const float> interleaved, std::vector<float>& mono);

    // Appends what was held back. It ends the stream: neither this nor convert() may be called after it before a
    // reset().
    //
    // Errors: AudioIOError decodeFailed
    void drain(std::vector<float>& mono);

    // Begins a new stream in the same formats; what was held back is forgotten. Far cheaper than a new converter.
    //
    // Errors: AudioIOError decodeFailed
    void reset();

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace AudioIO
