// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "FFmpeg.h"

#include <vector>

namespace AudioIO::FFmpeg {

// Turns decoded frames of any sample format into interleaved floats. Frames that come in another rate or
// with other channels than expected, as in joined recordings, are converted.
class Interleaver {
public:
    // Errors: AudioIOError decodeFailed, for a senseless rate or number of channels
    Interleaver(int sampleRate, int channels);
    Interleaver(const Interleaver&) = delete;
    Interleaver& operator=(const Interleaver&) = delete;
    ~Interleaver();

    int sampleRate() const { return rate_; } // Hz
    int channels() const { return layout_.nb_channels; }

    // Appends the frame's samples.
    //
    // Errors: AudioIOError decodeFailed, for a frame that cannot be converted
    void append(const AVFrame& frame, std::vector<float>& interleaved);

    // Appends what a change of rate held back; after the last frame.
    void finish(std::vector<float>& interleaved);

private:
    struct Source {
        int rate = 0;
        int format = AV_SAMPLE_FMT_NONE;
        int channels = 0;
        bool operator==(const Source&) const = default;
    };

    void prepare(const AVFrame& frame, std::vector<float>& interleaved);
    void convert(const uint8_t** planes, int frames, std::vector<float>& interleaved);

    int rate_;
    AVChannelLayout layout_ {};
    Source source_;
    Owned<SwrContext> converter_;
};

} // namespace AudioIO::FFmpeg
