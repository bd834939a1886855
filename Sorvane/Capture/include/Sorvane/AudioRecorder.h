// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/CaptureError.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace DesktopServices {
class AudioEngine;
class Microphone;
} // namespace DesktopServices

namespace Sorvane {

class AudioCapture;

// Records one dictation from the microphone, as 16 kHz mono samples in memory. Nothing is written to disk.
//
// One recorder serves the application's life: idle, recording or paused. What goes wrong while it records (audio that
// cannot be converted, a microphone that vanishes) ends nothing by itself: it is kept, and whoever asks for the samples
// is told.
//
// All functions are called from the main thread, and hold it up no longer than the audio thread needs for one buffer.
class AudioRecorder {
public:
    static constexpr int sampleRate = 16'000; // Hz
    static constexpr size_t capacity = 4'800'000; // samples, 300 seconds; what is heard after them is not kept

    // The microphone must outlive the recorder.
    explicit AudioRecorder(DesktopServices::Microphone& microphone);
    AudioRecorder(const AudioRecorder&) = delete;
    AudioRecorder& operator=(const AudioRecorder&) = delete;
    ~AudioRecorder();

    // Begins a new recording, from any state; an earlier one is forgotten. Idle after an error.
    //
    // Errors: CaptureError unavailable   there is no microphone, or none in a format that can be converted
    //         MicrophoneError            the microphone cannot be opened; in its own words
    void start();

    // Releases the microphone and keeps what was recorded. Nothing happens in other states than recording.
    void pause();

    // Goes on recording where the pause began, without a gap or a repetition. Still paused after an error; nothing
    // happens while recording.
    //
    // Errors: CaptureError unavailable   nothing is paused
    //         MicrophoneError            the microphone cannot be opened again; in its own words
    void resume();

    // A copy of the samples so far; empty when idle. The few milliseconds that the change of rate still holds back are
    // missing while recording, and only then: a pause and a stop fetch them.
    //
    // Errors: CaptureError conversion    some audio of this recording could not be converted
    //         CaptureError unavailable   the microphone vanished during this recording
    std::vector<float> snapshot() const;

    // Ends the recording and gives its samples; idle afterwards, also after an error, and then the samples are lost.
    //
    // Errors: those of snapshot()
    std::vector<float> stop();

    // Ends the recording and forgets it.
    void discard();

    // For the voice orb and the clock; both 0 when idle.
    double meter() const; // level of the latest buffer: 0 at -55 dB of mean power and below, 1 at 0 dB
    size_t sampleCount() const; // captured so far, pauses excluded

private:
    DesktopServices::Microphone& microphone_;
    std::unique_ptr<DesktopServices::AudioEngine> engine_; // there from a start to a stop, as is the capture
    std::shared_ptr<AudioCapture> capture_; // shared with the engine's tap
};

} // namespace Sorvane
