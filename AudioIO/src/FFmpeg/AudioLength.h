// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Demuxer.h"

#include <optional>

namespace AudioIO::FFmpeg {

struct AudioLength {
    int64_t frames = 0;

    // Where the audio ends inside the last packet, for containers that say so but leave the cut to the reader.
    std::optional<int64_t> paddingOfLastPacket;
};

// What can be known about the length of the demuxer's audio, in frames of `sampleRate`, without decoding it. Files
// that do not state it, or state it with the encoder's padding, are read through once, packet by packet.
AudioLength findLength(const LocalFile& file, const Demuxer& demuxer, int sampleRate);

} // namespace AudioIO::FFmpeg
