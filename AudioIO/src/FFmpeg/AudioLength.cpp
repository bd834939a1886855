// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "AudioLength.h"

extern "C" {
#include <libavutil/intreadwrite.h>
}

#include <algorithm>
#include <new>
#include <string_view>

namespace AudioIO::FFmpeg {

namespace {

// A year at the highest rate; what claims more is not believed.
constexpr int64_t longestBelieved = int64_t { 366 } * 24 * 3600 * 768'000;

bool isMP3(const Demuxer& demuxer)
{
    return demuxer.container().iformat->name == std::string_view("mp3");
}

// MPEG-4 counts the frames to be heard, without the padding on both sides.
bool countsHeardFrames(const Demuxer& demuxer)
{
    const std::string_view formats = demuxer.container().iformat->name;
    return formats.starts_with("mov,") && demuxer.stream().duration > 0;
}

int64_t inFrames(int64_t duration, AVRational unit, int sampleRate)
{
    return av_rescale_q(duration, unit, AVRational { 1, sampleRate });
}

bool isUncompressed(const Demuxer& demuxer)
{
    return av_get_exact_bits_per_sample(demuxer.stream().codecpar->codec_id) > 0;
}

// What the container says, if it says something of its own that can be believed.
std::optional<int64_t> statedFrames(const Demuxer& demuxer, int sampleRate)
{
    // The count in an MP3 file takes in the padding, whose size only the packets tell.
    if (isMP3(demuxer))
        return std::nullopt;
    const bool isGuess = demuxer.container().duration_estimation_method == AVFMT_DURATION_FROM_BITRATE;
    if (isGuess && !isUncompressed(demuxer))
        return std::nullopt;

    const AVStream& stream = demuxer.stream();
    const int64_t frames = stream.duration > 0
        ? inFrames(stream.duration, stream.time_base, sampleRate)
        : inFrames(std::max<int64_t>(demuxer.container().duration, 0), AVRational { 1, AV_TIME_BASE }, sampleRate);
    if (frames < 1 || frames > longestBelieved)
        return std::nullopt;
    return frames;
}

// No more frames than the file has bytes for.
int64_t boundedBySize(int64_t frames, const LocalFile& file, const Demuxer& demuxer)
{
    const AVCodecParameters& codec = *demuxer.stream().codecpar;
    const int64_t bitsPerFrame
        = int64_t { av_get_exact_bits_per_sample(codec.codec_id) } * std::max(codec.ch_layout.nb_channels, 1);
    return bitsPerFrame > 0 ? std::min(frames, file.size() * 8 / bitsPerFrame) : frames;
}

// Frames that the packet tells the decoder to leave out.
int64_t skippedFrames(const AVPacket& packet)
{
    size_t size = 0;
    const uint8_t* skip = av_packet_get_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
    return size < 8 ? 0 : int64_t { AV_RL32(skip) } + int64_t { AV_RL32(skip + 4) };
}

// Reads the packets of the whole file, without decoding them.
int64_t countFrames(const LocalFile& file, int sampleRate)
{
    Demuxer demuxer(file);
    const Owned<AVPacket> packet(av_packet_alloc());
    if (!packet)
        throw std::bad_alloc();

    double duration = 0; // in the stream's unit; hostile values add up without overflow
    int64_t skipped = 0;
    while (demuxer.next(*packet)) {
        duration += static_cast<double>(std::max<int64_t>(packet->duration, 0));
        skipped += skippedFrames(*packet);
    }
    const double frames = duration * av_q2d(demuxer.stream().time_base) * sampleRate;
    return std::clamp<int64_t>(
        static_cast<int64_t>(std::min(frames + 0.5, static_cast<double>(longestBelieved))) - skipped, 0,
        longestBelieved);
}

} // namespace

AudioLength findLength(const LocalFile& file, const Demuxer& demuxer, int sampleRate)
{
    const auto stated = statedFrames(demuxer, sampleRate);
    if (stated && countsHeardFrames(demuxer))
        return { .frames = boundedBySize(*stated, file, demuxer), .paddingOfLastPacket = *stated };

    const int64_t frames = stated ? *stated : countFrames(file, sampleRate);
    const int64_t priming = std::max(demuxer.stream().codecpar->initial_padding, 0); // which the decoder leaves out
    return { .frames = boundedBySize(std::max<int64_t>(frames - priming, 0), file, demuxer),
        .paddingOfLastPacket = std::nullopt };
}

} // namespace AudioIO::FFmpeg
