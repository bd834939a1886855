// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Sound/PulseEngine.h"
#include "Sound/SoundServer.h"

#include <DesktopLinux/Sound.h>

namespace DesktopLinux {

using DesktopServices::AuthorizationStatus;
using PlatformSupport::Awaitable;

namespace {

class PulseMicrophone final : public DesktopServices::Microphone {
public:
    explicit PulseMicrophone(std::shared_ptr<SoundServer> server)
        : server_(std::move(server))
    {
    }

    std::unique_ptr<DesktopServices::AudioEngine> makeEngine() override
    {
        const SoundServer::Lock hold(*server_);
        return std::make_unique<PulseEngine>(server_, server_->chosenMicrophone());
    }

private:
    std::shared_ptr<SoundServer> server_;
};

} // namespace

struct Sound::Parts {
    std::shared_ptr<SoundServer> server = std::make_shared<SoundServer>();
    PulseMicrophone microphone { server };
};

Sound::Sound()
    : parts_(std::make_unique<Parts>())
{
}

Sound::~Sound() = default;

DesktopServices::Microphone& Sound::microphone()
{
    return parts_->microphone;
}

AuthorizationStatus Sound::microphoneStatus() const
{
    const SoundServer::Lock hold(*parts_->server);
    if (parts_->server->state() == SoundServer::State::connecting)
        return AuthorizationStatus::notDetermined;
    return parts_->server->hasMicrophone() ? AuthorizationStatus::authorized : AuthorizationStatus::denied;
}

Awaitable<AuthorizationStatus> Sound::determineMicrophoneStatus() const
{
    const auto wait = [server = parts_->server](const PlatformSupport::Resumer& waiter) {
        const SoundServer::Lock hold(*server);
        server->whenDetermined(waiter);
    };
    co_await PlatformSupport::suspendUnlessCancelled(wait);
    co_return microphoneStatus();
}

} // namespace DesktopLinux
