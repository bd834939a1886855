// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "LocalFile.h"

namespace AudioIO::FFmpeg {

// Takes the packets of the best audio stream out of a container.
//
// Only containers of sound and video are recognised, and nothing but the file itself is opened, so playlists
// and references to other files lead nowhere. The file must outlive it; it stays where it was made.
class Demuxer {
public:
    // Errors: AudioIOError decodeFailed, for a file that is no container of audio
    explicit Demuxer(const LocalFile& file);
    Demuxer(const Demuxer&) = delete;
    Demuxer& operator=(const Demuxer&) = delete;

    const AVFormatContext& container() const { return *container_; }
    const AVStream& stream() const { return *stream_; }

    // Replaces `packet` by the next one of the stream; false at the end of the file, which is also where
    // damage makes going on impossible.
    //
    // Errors: AudioIOError decodeFailed, when the disk fails
    bool next(AVPacket& packet);

private:
    void open();
    void chooseStream();

    InputStream input_;
    Owned<AVFormatContext> container_;
    AVStream* stream_ = nullptr;
};

} // namespace AudioIO::FFmpeg
