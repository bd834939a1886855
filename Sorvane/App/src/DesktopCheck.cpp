// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "DesktopCheck.h"

#include "LinuxDesktop.h"

#include <PlatformSupport/BlockingValue.h>
#include <PlatformSupport/SystemClock.h>
#include <Sorvane/AudioRecorder.h>
#include <Sorvane/CaptureError.h>
#include <Sorvane/TextInsertion.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <exception>
#include <vector>

namespace Sorvane {

namespace {

using DesktopServices::AuthorizationStatus;

constexpr auto accessibilityLimit = std::chrono::seconds(1); // to be found
constexpr auto accessibilityStep = std::chrono::milliseconds(10);

constexpr int recordingCycles = 2;
constexpr auto recordingLength = std::chrono::milliseconds(600);
constexpr size_t fewestSamples = 1001;

// The accessibility bus is looked for as soon as there is somebody to use it, and answers a little later.
PlatformSupport::Awaitable<void> waitForAccessibility(
    const DesktopServices::Permissions& permissions, PlatformSupport::Clock& clock)
{
    const auto end = clock.now() + accessibilityLimit;
    while (!permissions.isAccessibilityTrusted() && clock.now() < end)
        co_await clock.sleep(accessibilityStep);
}

InsertionTarget focusedField()
{
    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::SystemClock clock;
    LinuxDesktop desktop(loop.executor(), clock);
    TextInsertion insertion(desktop.services(), clock);
    const auto wait = [&] { return waitForAccessibility(desktop.permissions, clock); };
    loop.finish(PlatformSupport::startTask(loop.executor(), wait));
    return insertion.capture(TextInsertion::HarnessSearch::No);
}

bool isUsable(const std::vector<float>& samples)
{
    return samples.size() >= fewestSamples
        && std::ranges::all_of(samples, [](float sample) { return std::isfinite(sample); });
}

std::vector<float> record(AudioRecorder& recorder, PlatformSupport::Clock& clock)
{
    recorder.start();
    PlatformSupport::blockingValue([&] { return clock.sleep(recordingLength); });
    return recorder.stop();
}

void checkCycle(int cycle, AudioRecorder& recorder, PlatformSupport::Clock& clock)
{
    const auto samples = record(recorder, clock);
    if (!isUsable(samples))
        throw CaptureError::conversion("No usable microphone samples received");
    std::printf("PASS: recording cycle %d, %zu samples captured and discarded.\n", cycle, samples.size());
    std::fflush(stdout);
}

} // namespace

int checkFocus()
{
    try {
        const auto target = focusedField();
        std::printf("PASS: focused text field in %s. No audio recorded or text inserted.\n", target.name.c_str());
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "Focus check failed: %s\n", error.what());
    }
    return 1;
}

int checkRecording()
{
    try {
        DesktopLinux::Sound sound;
        const auto status = PlatformSupport::blockingValue([&] { return sound.determineMicrophoneStatus(); });
        if (status != AuthorizationStatus::authorized) {
            std::fputs("Microphone permission must already be granted to run this check.\n", stderr);
            return 1;
        }
        PlatformSupport::SystemClock clock;
        AudioRecorder recorder(sound.microphone());
        for (int cycle = 1; cycle <= recordingCycles; ++cycle)
            checkCycle(cycle, recorder, clock);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "Recording check failed: %s\n", error.what());
    }
    return 1;
}

} // namespace Sorvane
