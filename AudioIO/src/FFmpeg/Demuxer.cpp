// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Demuxer.h"

#include <AudioIO/AudioIOError.h>

#include <new>
#include <span>
#include <system_error>

namespace AudioIO::FFmpeg {

namespace {

constexpr const char* knownContainers
    = "aac,ac3,aiff,amr,amrnb,amrwb,ape,asf,au,avi,caf,dts,dtshd,eac3,flac,flv,loas,matroska,mov,mp3,mpc,mpc8,mpeg,"
      "mpegts,ogg,oma,tak,tta,voc,w64,wav,wv";

// A demuxer may ask to be called again, but not without end.
constexpr int patience = 1000;

int refuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**)
{
    return AVERROR(EACCES);
}

} // namespace

Demuxer::Demuxer(const LocalFile& file)
    : input_(file)
{
    silenceLog();
    open();
    chooseStream();
}

void Demuxer::open()
{
    AVFormatContext* context = avformat_alloc_context();
    if (!context)
        throw std::bad_alloc();
    context->pb = input_.context();
    context->io_open = refuseToOpen;

    AVDictionary* options = nullptr;
    av_dict_set(&options, "format_whitelist", knownContainers, 0);
    av_dict_set(&options, "protocol_whitelist", "none", 0);
    const int opened = avformat_open_input(&context, "", nullptr, &options); // frees the context if it fails
    av_dict_free(&options);
    if (opened == AVERROR(ENOMEM))
        throw AudioIOError::decodeFailed(errorText(opened));
    if (opened < 0)
        throw AudioIOError::decodeFailed("Not an audio file that can be read");
    container_.reset(context);
}

void Demuxer::chooseStream()
{
    // Its failure is not the last word: what it could not find out, decoding will.
    avformat_find_stream_info(container_.get(), nullptr);
    const int best = av_find_best_stream(container_.get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (best < 0)
        throw AudioIOError::decodeFailed("The file has no audio track");

    const std::span streams(container_->streams, container_->nb_streams);
    for (AVStream* stream : streams)
        stream->discard = AVDISCARD_ALL;
    stream_ = streams[static_cast<size_t>(best)];
    stream_->discard = AVDISCARD_DEFAULT;
}

bool Demuxer::next(AVPacket& packet)
{
    int waits = 0;
    while (true) {
        av_packet_unref(&packet);
        const int result = av_read_frame(container_.get(), &packet);
        if (input_.readError() != 0)
            throw AudioIOError::decodeFailed(std::generic_category().message(input_.readError()));
        if (result == AVERROR(EAGAIN) && ++waits < patience)
            continue;
        if (result < 0)
            return false;
        if (packet.stream_index == stream_->index)
            return true;
    }
}

} // namespace AudioIO::FFmpeg
