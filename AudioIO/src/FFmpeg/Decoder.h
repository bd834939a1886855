// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Demuxer.h"

namespace AudioIO::FFmpeg {

// Decodes a demuxer's packets. What an encoder put before and after the audio is cut off by the codec, where
// the packets say so. The demuxer must outlive it.
class Decoder {
public:
    // Errors: AudioIOError decodeFailed, for a codec that is not known
    explicit Decoder(Demuxer& demuxer);

    // Replaces `frame` by the next one; false after the last. Packets that do not decode are left out.
    //
    // Errors: AudioIOError decodeFailed, when the disk fails
    bool next(AVFrame& frame);

private:
    void sendPacket();

    Demuxer& demuxer_;
    Owned<AVCodecContext> codec_;
    Owned<AVPacket> packet_;
    bool draining_ = false;
};

} // namespace AudioIO::FFmpeg
