// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Sound/PulseEngine.h"

#include <PlatformSupport/Precondition.h>

#include <utility>

namespace DesktopLinux {

using DesktopServices::AudioFormat;
using DesktopServices::AudioTap;
using DesktopServices::MicrophoneError;

namespace {

PulseEngine& engine(void* data)
{
    return *static_cast<PulseEngine*>(data);
}

} // namespace

void PulseEngine::FreeStream::operator()(pa_stream* stream) const
{
    pa_stream_set_state_callback(stream, nullptr, nullptr);
    pa_stream_set_read_callback(stream, nullptr, nullptr);
    pa_stream_set_moved_callback(stream, nullptr, nullptr);
    pa_stream_disconnect(stream);
    pa_stream_unref(stream);
}

PulseEngine::PulseEngine(std::shared_ptr<SoundServer> server, std::optional<SoundSource> source)
    : server_(std::move(server))
    , source_(std::move(source))
{
}

PulseEngine::~PulseEngine()
{
    stop();
}

AudioFormat PulseEngine::inputFormat() const
{
    return source_ ? source_->format : AudioFormat();
}

void PulseEngine::installTap(size_t bufferFrames, AudioTap tap)
{
    const SoundServer::Lock hold(*server_);
    PlatformSupport::precondition(!isRunning_, "a tap for an engine that runs");
    bufferFrames_ = bufferFrames;
    tap_ = std::move(tap);
}

void PulseEngine::start()
{
    const SoundServer::Lock hold(*server_);
    if (isRunning_)
        return;
    stream_.reset(); // of a source that was lost
    auto* const context = server_->context();
    if (!source_ || !context)
        throw MicrophoneError("The sound server does not answer.");
    connect(context);
    const bool isSettled = server_->waitUntil(
        [this] {
            const auto state = pa_stream_get_state(stream_.get());
            return state != PA_STREAM_CREATING && state != PA_STREAM_UNCONNECTED;
        },
        SoundServer::answerTime);
    if (pa_stream_get_state(stream_.get()) == PA_STREAM_READY) {
        isRunning_ = true;
        return;
    }
    const std::string reason = isSettled ? pa_strerror(pa_context_errno(context)) : "The sound server does not answer.";
    stream_.reset();
    throw MicrophoneError(reason);
}

void PulseEngine::stop()
{
    const SoundServer::Lock hold(*server_);
    isRunning_ = false;
    stream_.reset();
}

void PulseEngine::connect(pa_context* context)
{
    const pa_sample_spec format { PA_SAMPLE_FLOAT32NE, static_cast<std::uint32_t>(source_->format.sampleRate),
        static_cast<std::uint8_t>(source_->format.channels) };
    stream_.reset(pa_stream_new(context, "Dictation", &format, nullptr));
    if (!stream_)
        throw MicrophoneError(pa_strerror(pa_context_errno(context)));
    pa_stream_set_state_callback(
        stream_.get(), [](pa_stream*, void* data) { engine(data).stateChanged(); }, this);
    pa_stream_set_read_callback(
        stream_.get(), [](pa_stream*, size_t, void* data) { engine(data).handOver(); }, this);
    pa_stream_set_moved_callback(
        stream_.get(), [](pa_stream*, void* data) { engine(data).lose(); }, this);

    // Without a size of its own a buffer is of 0.4 seconds or more.
    const auto any = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr buffers { any, any, any, any,
        static_cast<std::uint32_t>(bufferFrames_ * pa_frame_size(&format)) };
    // A source that vanishes would be replaced by the echo of the loudspeaker.
    const auto flags = static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE);
    pa_stream_connect_record(stream_.get(), source_->name.c_str(), &buffers, flags); // how it ends, the state tells
}

void PulseEngine::stateChanged()
{
    if (!PA_STREAM_IS_GOOD(pa_stream_get_state(stream_.get())))
        lose();
    server_->somethingHappened();
}

// The stream itself is freed by the next start() or stop(): it is the one that calls.
void PulseEngine::lose()
{
    if (std::exchange(isRunning_, false))
        tap_.lost();
}

void PulseEngine::handOver()
{
    const auto& format = source_->format;
    while (pa_stream_readable_size(stream_.get()) > 0) {
        const void* data = nullptr;
        size_t bytes = 0;
        if (pa_stream_peek(stream_.get(), &data, &bytes) != 0 || bytes == 0)
            return;
        const auto frames = bytes / sizeof(float) / static_cast<size_t>(format.channels);
        if (isRunning_ && data && frames > 0) // without data there is a hole
            tap_.received(
                { format, { static_cast<const float*>(data), frames * static_cast<size_t>(format.channels) } });
        pa_stream_drop(stream_.get());
    }
}

} // namespace DesktopLinux
