// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Sound/SoundServer.h"

#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <utility>

namespace DesktopLinux {

using PlatformSupport::precondition;

namespace {

pa_usec_t fromNow(std::chrono::milliseconds delay)
{
    return pa_rtclock_now() + static_cast<pa_usec_t>(std::chrono::microseconds(delay).count());
}

SoundServer& server(void* data)
{
    return *static_cast<SoundServer*>(data);
}

// The answer is told to a callback; nobody waits for the operation itself.
void begin(pa_operation* operation)
{
    if (operation)
        pa_operation_unref(operation);
}

} // namespace

void SoundServer::FreeContext::operator()(pa_context* context) const
{
    pa_context_set_state_callback(context, nullptr, nullptr);
    pa_context_set_subscribe_callback(context, nullptr, nullptr);
    pa_context_disconnect(context);
    pa_context_unref(context);
}

SoundServer::SoundServer()
    : loop_(pa_threaded_mainloop_new())
{
    precondition(loop_ != nullptr, "no loop for the sound server");
    pa_threaded_mainloop_set_name(loop_.get(), "sound"); // later it would name the thread that calls
    precondition(pa_threaded_mainloop_start(loop_.get()) == 0, "no thread for the sound server");
    const Lock hold(*this);
    connect();
}

SoundServer::~SoundServer()
{
    {
        const Lock hold(*this);
        setTimer(std::chrono::milliseconds::zero());
        context_.reset();
    }
    pa_threaded_mainloop_stop(loop_.get());
}

void SoundServer::connect()
{
    context_.reset();
    auto* const properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, "Sorvane");
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ID, "com.nerith.sorvane");
    context_.reset(pa_context_new_with_proplist(pa_threaded_mainloop_get_api(loop_.get()), "Sorvane", properties));
    pa_proplist_free(properties);
    pa_context_set_state_callback(
        context_.get(), [](pa_context*, void* data) { server(data).contextChanged(); }, this);
    pa_context_set_subscribe_callback(
        context_.get(),
        [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* data) { server(data).askForSources(); },
        this);
    // Who wants a sound server has started it, or lets the session start it.
    pa_context_connect(context_.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
    if (pa_context_get_state(context_.get()) != PA_CONTEXT_FAILED)
        setTimer(connectTime);
}

void SoundServer::contextChanged()
{
    const auto state = pa_context_get_state(context_.get());
    if (state == PA_CONTEXT_READY) {
        begin(pa_context_subscribe(context_.get(),
            static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SOURCE | PA_SUBSCRIPTION_MASK_SERVER), nullptr,
            nullptr));
        askForSources();
    } else if (!PA_CONTEXT_IS_GOOD(state)) {
        microphones_.clear();
        determine(State::refused);
        setTimer(pauseBetweenTries);
    }
    somethingHappened();
}

// 0 for no timer.
void SoundServer::setTimer(std::chrono::milliseconds delay)
{
    auto* const api = pa_threaded_mainloop_get_api(loop_.get());
    if (timer_)
        api->time_free(timer_);
    timer_ = nullptr;
    if (delay.count() > 0)
        timer_ = pa_context_rttime_new(
            context_.get(), fromNow(delay),
            [](pa_mainloop_api*, pa_time_event*, const timeval*, void* data) { server(data).timerRang(); }, this);
}

// A server that does not answer is given up, and then tried again.
void SoundServer::timerRang()
{
    const bool wasTrying = PA_CONTEXT_IS_GOOD(pa_context_get_state(context_.get()));
    if (wasTrying)
        determine(State::refused);
    context_.reset();
    connect();
    if (wasTrying)
        somethingHappened();
}

void SoundServer::askForSources()
{
    ++listsAsked_;
    begin(pa_context_get_server_info(
        context_.get(),
        [](pa_context*, const pa_server_info* info, void* data) {
            if (info)
                server(data).serverTold(*info);
        },
        this));
    begin(pa_context_get_source_info_list(
        context_.get(),
        [](pa_context*, const pa_source_info* info, int end, void* data) {
            if (end == 0 && info)
                server(data).sourceTold(*info);
            else
                server(data).sourcesEnded();
        },
        this));
}

void SoundServer::serverTold(const pa_server_info& info)
{
    defaultSource_ = info.default_source_name ? info.default_source_name : "";
}

void SoundServer::sourceTold(const pa_source_info& source)
{
    if (source.monitor_of_sink != PA_INVALID_INDEX || !source.name || !pa_sample_spec_valid(&source.sample_spec))
        return;
    beingTold_.push_back(
        { source.name, { static_cast<int>(source.sample_spec.rate), static_cast<int>(source.sample_spec.channels) } });
}

void SoundServer::sourcesEnded()
{
    microphones_ = std::exchange(beingTold_, {});
    ++listsTold_;
    setTimer(std::chrono::milliseconds::zero());
    determine(State::ready);
    somethingHappened();
}

void SoundServer::determine(State state)
{
    state_ = state;
    for (const auto& waiter : std::exchange(waiting_, {}))
        waiter.resume();
}

void SoundServer::whenDetermined(const PlatformSupport::Resumer& waiter)
{
    if (state_ == State::connecting)
        waiting_.push_back(waiter);
    else
        waiter.resume();
}

std::optional<SoundSource> SoundServer::chosenMicrophone()
{
    if (!waitUntil([this] { return state_ != State::connecting; }, connectTime) || !context())
        return std::nullopt;
    askForSources(); // what was told may be older than the user's choice
    const auto wanted = listsAsked_;
    if (!waitUntil([&] { return listsTold_ >= wanted || !context(); }, answerTime) || microphones_.empty())
        return std::nullopt;
    const auto chosen = std::ranges::find(microphones_, defaultSource_, &SoundSource::name);
    return chosen == microphones_.end() ? microphones_.front() : *chosen;
}

bool SoundServer::waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    struct Alarm {
        SoundServer& server;
        bool isRinging = false;
    } alarm { *this };
    auto* const api = pa_threaded_mainloop_get_api(loop_.get());
    auto* const timer = pa_context_rttime_new(
        context_.get(), fromNow(limit),
        [](pa_mainloop_api*, pa_time_event*, const timeval*, void* data) {
            static_cast<Alarm*>(data)->isRinging = true;
            static_cast<Alarm*>(data)->server.somethingHappened();
        },
        &alarm);
    while (!condition() && !alarm.isRinging)
        pa_threaded_mainloop_wait(loop_.get());
    api->time_free(timer);
    return condition();
}

} // namespace DesktopLinux
