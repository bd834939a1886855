// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

#include <memory>
#include <string>

// FFmpeg's objects with owners, and its error codes as text.
namespace AudioIO::FFmpeg {

struct Release {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(SwrContext* context) const { swr_free(&context); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVIOContext* stream) const
    {
        av_freep(&stream->buffer);
        avio_context_free(&stream);
    }
};

template <typename T> using Owned = std::unique_ptr<T, Release>;

// "Invalid data found when processing input"
std::string errorText(int code);

// Nothing of what FFmpeg says goes to standard error: what matters comes as an AudioIOError.
void silenceLog();

} // namespace AudioIO::FFmpeg
