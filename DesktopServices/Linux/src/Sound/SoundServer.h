// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/AudioEngine.h>
#include <PlatformSupport/Suspension.h>

#include <pulse/pulseaudio.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace DesktopLinux {

// A microphone: a source that is not the echo of a loudspeaker.
struct SoundSource {
    std::string name; // as the server knows it
    DesktopServices::AudioFormat format; // its own
};

// The connection to the sound server, and the thread that serves it.
//
// The thread holds the server's lock while it calls anyone here. Whoever else uses the server takes the lock first, and
// must hold no other that the thread could want.
class SoundServer {
public:
    // Who is authorized, connected and has told its sources answers within milliseconds.
    static constexpr std::chrono::milliseconds answerTime { 1000 };
    static constexpr std::chrono::milliseconds connectTime { 2000 };
    static constexpr std::chrono::milliseconds pauseBetweenTries { 1000 };

    SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;
    ~SoundServer();

    // What follows needs the lock.
    class Lock {
    public:
        explicit Lock(const SoundServer& server)
            : loop_(server.loop_.get())
        {
            pa_threaded_mainloop_lock(loop_);
        }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;
        ~Lock() { pa_threaded_mainloop_unlock(loop_); }

    private:
        pa_threaded_mainloop* loop_;
    };

    enum class State { connecting, ready, refused };
    State state() const { return state_; }

    // Null unless ready; the same for as long as it stays so.
    pa_context* context() const { return state_ == State::ready ? context_.get() : nullptr; }

    bool hasMicrophone() const { return !microphones_.empty(); }

    // Called once, when it is no longer connecting.
    void whenDetermined(const PlatformSupport::Resumer& waiter);

    // The microphone that the user has chosen, as the server knows it now. Waits, for a bounded time.
    std::optional<SoundSource> chosenMicrophone();

    // Waits until the condition holds: the thread looks at it whenever something has happened. False if it does not in
    // time.
    bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);
    void somethingHappened() { pa_threaded_mainloop_signal(loop_.get(), 0); }

private:
    struct FreeLoop {
        void operator()(pa_threaded_mainloop* loop) const { pa_threaded_mainloop_free(loop); }
    };
    struct FreeContext {
        void operator()(pa_context* context) const;
    };

    void connect();
    void contextChanged();
    void setTimer(std::chrono::milliseconds delay);
    void timerRang();
    void askForSources();
    void sourceTold(const pa_source_info& source);
    void sourcesEnded();
    void serverTold(const pa_server_info& server);
    void determine(State state);

    std::unique_ptr<pa_threaded_mainloop, FreeLoop> loop_;
    std::unique_ptr<pa_context, FreeContext> context_;
    State state_ = State::connecting;
    pa_time_event* timer_ = nullptr; // until it counts as refused, or until the next try
    std::string defaultSource_;
    std::vector<SoundSource> microphones_;
    std::vector<SoundSource> beingTold_; // the list that is on its way
    size_t listsAsked_ = 0;
    size_t listsTold_ = 0;
    std::vector<PlatformSupport::Resumer> waiting_;
};

} // namespace DesktopLinux
