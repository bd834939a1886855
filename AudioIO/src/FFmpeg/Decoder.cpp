// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Decoder.h"

#include <AudioIO/AudioIOError.h>

#include <new>

namespace AudioIO::FFmpeg {

namespace {

Owned<AVCodecContext> openCodec(const AVStream& stream)
{
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    if (!codec)
        throw AudioIOError::decodeFailed(
            std::string("No decoder for ") + avcodec_get_name(stream.codecpar->codec_id) + " audio");

    Owned<AVCodecContext> context(avcodec_alloc_context3(codec));
    if (!context)
        throw std::bad_alloc();
    avcodec_parameters_to_context(context.get(), stream.codecpar);
    context->pkt_timebase = stream.time_base;
    context->thread_count = 1;
    if (const int opened = avcodec_open2(context.get(), codec, nullptr); opened < 0)
        throw AudioIOError::decodeFailed(
            std::string("Cannot decode its ") + avcodec_get_name(codec->id) + " audio: " + errorText(opened));
    return context;
}

} // namespace

Decoder::Decoder(Demuxer& demuxer)
    : demuxer_(demuxer)
    , codec_(openCodec(demuxer.stream()))
    , packet_(av_packet_alloc())
{
    if (!packet_)
        throw std::bad_alloc();
}

bool Decoder::next(AVFrame& frame)
{
    while (true) {
        const int received = avcodec_receive_frame(codec_.get(), &frame);
        if (received >= 0 && frame.nb_samples > 0)
            return true;
        if (received == AVERROR(ENOMEM))
            throw AudioIOError::decodeFailed(errorText(received));
        if (received < 0 && draining_)
            return false;
        if (received < 0)
            sendPacket();
    }
}

// An empty packet would mean the end to the codec, so only the real end sends one.
void Decoder::sendPacket()
{
    do {
        draining_ = !demuxer_.next(*packet_);
    } while (!draining_ && packet_->size == 0);

    const int sent = avcodec_send_packet(codec_.get(), draining_ ? nullptr : packet_.get());
    if (sent == AVERROR(ENOMEM))
        throw AudioIOError::decodeFailed(errorText(sent));
}

} // namespace AudioIO::FFmpeg
