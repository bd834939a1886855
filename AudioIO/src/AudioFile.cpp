// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "FFmpeg/AudioLength.h"
#include "FFmpeg/Decoder.h"
#include "FFmpeg/Interleaver.h"

#include <AudioIO/AudioFile.h>
#include <AudioIO/AudioIOError.h>

#include <algorithm>
#include <new>
#include <optional>

namespace AudioIO {

class AudioFile::Implementation {
public:
    explicit Implementation(const std::filesystem::path& path);

    int sampleRate() const { return interleaver_->sampleRate(); }
    int channels() const { return interleaver_->channels(); }
    int64_t length() const { return length_; }
    int64_t framePosition() const { return position_; }
    int64_t read(int64_t maxFrames, std::vector<float>& interleaved);

private:
    int64_t framesAhead() const { return static_cast<int64_t>(ahead_.size()) / channels(); }
    int64_t framesDecoded() const { return position_ + framesAhead(); }
    bool isInPadding() const { return padding_ && framesDecoded() > *padding_; }
    void decodeAhead(int64_t wantedFrames);
    void decodeFrame();
    void finish();

    FFmpeg::LocalFile file_;
    FFmpeg::Demuxer demuxer_;
    FFmpeg::Decoder decoder_;
    FFmpeg::Owned<AVFrame> frame_;
    std::optional<FFmpeg::Interleaver> interleaver_;

    std::vector<float> ahead_; // decoded but not yet read, interleaved; not empty while there is more to read
    bool ended_ = false; // all is decoded
    int64_t position_ = 0;
    int64_t length_ = 0;
    std::optional<int64_t> padding_; // where the padding of the last packet begins
};

// The first frame is decoded at once: only then are the rate and the channels certain.
AudioFile::Implementation::Implementation(const std::filesystem::path& path)
    : file_(path)
    , demuxer_(file_)
    , decoder_(demuxer_)
    , frame_(av_frame_alloc())
{
    if (!frame_)
        throw std::bad_alloc();

    if (decoder_.next(*frame_)) {
        interleaver_.emplace(frame_->sample_rate, frame_->ch_layout.nb_channels);
        interleaver_->append(*frame_, ahead_);
        const FFmpeg::AudioLength found = FFmpeg::findLength(file_, demuxer_, sampleRate());
        length_ = found.frames;
        padding_ = found.paddingOfLastPacket;
    } else {
        const AVCodecParameters& stated = *demuxer_.stream().codecpar;
        interleaver_.emplace(stated.sample_rate, stated.ch_layout.nb_channels);
        ended_ = true;
    }
    decodeAhead(0);
}

int64_t AudioFile::Implementation::read(int64_t maxFrames, std::vector<float>& interleaved)
{
    const int64_t wanted = std::max<int64_t>(maxFrames, 0);
    decodeAhead(wanted);

    const int64_t frames = std::min(wanted, framesAhead());
    const auto end = ahead_.begin() + frames * channels();
    interleaved.assign(ahead_.begin(), end);
    ahead_.erase(ahead_.begin(), end);
    position_ += frames;
    return frames;
}

// Decodes until more than `wantedFrames` lie ahead, so that the end is noticed by the read that reaches it.
void AudioFile::Implementation::decodeAhead(int64_t wantedFrames)
{
    while (!ended_ && (framesAhead() <= wantedFrames || isInPadding()))
        decodeFrame();
    length_ = ended_ ? framesDecoded() : std::max(length_, framesDecoded());
}

void AudioFile::Implementation::decodeFrame()
{
    if (!decoder_.next(*frame_)) {
        finish();
        return;
    }
    if (isInPadding())
        padding_.reset(); // what looked like it was not the last packet's, so the stated length is wrong
    interleaver_->append(*frame_, ahead_);
}

void AudioFile::Implementation::finish()
{
    interleaver_->finish(ahead_);
    if (isInPadding())
        ahead_.resize(static_cast<size_t>((*padding_ - position_) * channels()));
    ended_ = true;
}

AudioFile::AudioFile(const std::filesystem::path& path)
    : implementation_(std::make_unique<Implementation>(path))
{
}

AudioFile::AudioFile(AudioFile&&) noexcept = default;
AudioFile& AudioFile::operator=(AudioFile&&) noexcept = default;
AudioFile::~AudioFile() = default;

int AudioFile::sampleRate() const
{
    return implementation_->sampleRate();
}
int AudioFile::channels() const
{
    return implementation_->channels();
}
int64_t AudioFile::length() const
{
    return implementation_->length();
}
int64_t AudioFile::framePosition() const
{
    return implementation_->framePosition();
}

int64_t AudioFile::read(int64_t maxFrames, std::vector<float>& interleaved)
{
    return implementation_->read(maxFrames, interleaved);
}

} // namespace AudioIO
