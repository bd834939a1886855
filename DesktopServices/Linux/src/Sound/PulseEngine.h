// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Sound/SoundServer.h"

#include <DesktopServices/Microphone.h>

#include <memory>
#include <optional>

namespace DesktopLinux {

// Listens to one source. The tap is called on the sound server's thread.
class PulseEngine final : public DesktopServices::AudioEngine {
public:
    PulseEngine(std::shared_ptr<SoundServer> server, std::optional<SoundSource> source);
    ~PulseEngine() override;

    DesktopServices::AudioFormat inputFormat() const override;
    void installTap(size_t bufferFrames, DesktopServices::AudioTap tap) override;
    void start() override;
    void stop() override;

private:
    struct FreeStream {
        void operator()(pa_stream* stream) const;
    };

    void connect(pa_context* context);
    void stateChanged();
    void lose();
    void handOver();

    std::shared_ptr<SoundServer> server_;
    std::optional<SoundSource> source_;
    size_t bufferFrames_ = 0;
    DesktopServices::AudioTap tap_;
    std::unique_ptr<pa_stream, FreeStream> stream_; // under the server's lock, as is what follows
    bool isRunning_ = false;
};

} // namespace DesktopLinux
