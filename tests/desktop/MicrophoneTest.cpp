// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "SessionOnTheDesktop.h"

#include <algorithm>
#include <complex>
#include <numbers>
#include <span>

namespace Sorvane {

namespace {

constexpr auto missing = "Microphone access is missing. Open setup to allow Sorvane to hear you.";
constexpr auto unavailable = "The microphone is unavailable. Check your audio input in System Settings.";

class MicrophoneOnTheDesktop : public SessionOnTheDesktop {
protected:
    // The microphone is there, and the application ready for a dictation.
    void openWithMicrophone()
    {
        module = server.addMicrophone("desk", 48000, 2);
        open();
        untilReady();
    }

    // How much of the purest tenth of a second is a tone of this pitch, 0 to 1: the player may falter.
    static double purity(std::span<const float> samples, double pitch)
    {
        constexpr size_t tenth = AudioRecorder::sampleRate / 10;
        double purest = 0;
        for (; samples.size() >= tenth; samples = samples.subspan(tenth)) {
            std::complex<double> tone;
            double power = 1e-3;
            for (size_t i = 0; i < tenth; ++i) {
                tone += double { samples[i] }
                    * std::polar(1.0, 2 * std::numbers::pi * pitch * double(i) / AudioRecorder::sampleRate);
                power += samples[i] * samples[i];
            }
            purest = std::max(purest, 2 * std::norm(tone) / (power * double(tenth)));
        }
        return purest;
    }

    std::string module; // of the microphone
};

TEST_F(MicrophoneOnTheDesktop, IsMissedAndWorksOnceItIsPluggedIn)
{
    open();
    desktop.untilAccessible();
    desktop.goTo("line");
    pressShortcut();
    untilStatusIs(missing);
    EXPECT_EQ(controller->phase(), DictationPhase::idle);
    EXPECT_EQ(windowsShown, 1);
    server.addMicrophone("desk", 48000, 2);
    untilReady();
    expectDictation("line");
}

TEST_F(MicrophoneOnTheDesktop, CanVanishWhileItIsListenedTo)
{
    openWithMicrophone();
    desktop.goTo("line");
    begin();
    untilCaptured(0.3);
    server.control("unload-module " + module);
    while (controller->microphoneAllowed())
        controller->refreshPermissions();
    end();
    EXPECT_EQ(controller->status(), unavailable);
    EXPECT_EQ(desktop.form.ask("read line"), "[]");
    server.addMicrophone("desk", 48000, 2);
    untilReady();
    expectDictation("line");
}

TEST_F(MicrophoneOnTheDesktop, ComesBackWithTheSoundServer)
{
    openWithMicrophone();
    desktop.goTo("line");
    begin();
    untilCaptured(0.3);
    server.kill();
    while (controller->microphoneAllowed())
        controller->refreshPermissions();
    end();
    EXPECT_EQ(controller->status(), unavailable);
    pressShortcut();
    untilStatusIs(missing);
    server.start();
    server.addMicrophone("desk", 48000, 2);
    untilReady();
    expectDictation("line");
}

TEST_F(MicrophoneOnTheDesktop, IsOffDuringAPause)
{
    openWithMicrophone();
    desktop.goTo("line");
    begin();
    untilCaptured(0.3);
    controller->pause();
    const auto captured = controller->elapsed();
    EXPECT_EQ(server.control("list source-outputs").find("Dictation"), std::string::npos);
    server.control("suspend-source desk 1"); // as it is when nobody listens for long
    controller->resume();
    server.control("suspend-source desk 0");
    untilCaptured(0.3);
    EXPECT_GE(controller->elapsed(), captured + 0.3);
    end();
    expectWordsIn("line");
}

TEST_F(MicrophoneOnTheDesktop, CanBeLostDuringAPauseWithoutLossOfWords)
{
    openWithMicrophone();
    desktop.goTo("line");
    begin();
    untilCaptured(0.3);
    controller->pause();
    server.control("unload-module " + module);
    controller->resume();
    EXPECT_EQ(controller->status(), "Could not resume: No such entity");
    EXPECT_EQ(controller->phase(), DictationPhase::paused);
    end();
    expectWordsIn("line");
}

TEST_F(MicrophoneOnTheDesktop, GoesOnAfterItWasSuspended)
{
    openWithMicrophone();
    desktop.goTo("line");
    begin();
    untilCaptured(0.3);
    server.control("suspend-source desk 1");
    server.control("suspend-source desk 0");
    untilCaptured(0.3);
    end();
    expectWordsIn("line");
}

// Whatever the source's own rate and channels are, a tone keeps its pitch.
TEST_F(MicrophoneOnTheDesktop, IsHeardAtItsPitch)
{
    constexpr int pitch = 1000; // Hz
    open();
    controller->setPreviewBeforeInsert(true); // nobody waits for a paste
    for (const int sampleRate : { 44100, 48000, 96000 })
        for (const int channels : { 1, 2 }) {
            const auto name = std::to_string(sampleRate) + "-" + std::to_string(channels);
            server.addMicrophone(name, sampleRate, channels);
            untilReady();
            server.beginTone(name, pitch);
            begin();
            desktop.loop.turnUntil([this] { return controller->level() > 0.5; });
            untilCaptured(0.6);
            end();
            server.endTone();
            EXPECT_GT(purity(engine->samples, pitch), 0.9) << name;
        }
}

// Nobody waits for five minutes here.
TEST_F(MicrophoneOnTheDesktop, IsListenedToForFiveMinutesAtMost)
{
    server.addHastyMicrophone("hasty");
    open();
    untilReady();
    desktop.goTo("line");
    begin();
    desktop.loop.turnUntil([this] { return controller->phase() == DictationPhase::idle; });
    EXPECT_EQ(controller->elapsed(), 300.0);
    EXPECT_EQ(engine->samples.size(), 4'800'000U);
    expectWordsIn("line");
}

} // namespace

} // namespace Sorvane
