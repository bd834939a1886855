// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <AudioIO/AudioConverter.h>
#include <DesktopServices/AudioEngine.h>
#include <Sorvane/CaptureError.h>

#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace Sorvane {

// The samples of one recording: the audio thread writes them, the main thread looks at them.
//
// One lock guards all of it. The audio thread holds it from the beginning of a buffer to its end, the main thread for
// as long as it takes to copy. Room for the whole recording is set aside at the beginning (the system gives the memory
// only as it is filled), so that the audio thread never moves megabytes under the lock.
class AudioCapture {
public:
    // Errors: CaptureError unavailable, for a format that cannot be converted, as that of no device
    explicit AudioCapture(DesktopServices::AudioFormat inputFormat);

    // Converts what was heard, keeps what fits, and meters all of it. A failure is kept for snapshot(). Nothing happens
    // while paused.
    void append(const DesktopServices::AudioBuffer& buffer);

    // Something else than the conversion failed.
    void fail(const CaptureError& failure);

    // The audio ends here: what the converter holds back belongs to it.
    void pause();

    // New audio begins here; nothing happens unless paused.
    void resume();

    // Errors: the latest failure, whatever came after it
    std::vector<float> snapshot() const;

    size_t sampleCount() const;
    double meter() const; // 0..1

    // The room for the conversion of one buffer. Example: 2048 frames at 48 kHz ask for 715 samples.
    static size_t outputCapacity(size_t frames, int inputSampleRate);

private:
    template <typename Step> bool convert(Step step);
    void keep(std::span<const float> converted);

    const DesktopServices::AudioFormat inputFormat_;

    mutable std::mutex lock_; // guards all that follows
    std::vector<float> samples_;
    double meter_ = 0;
    std::optional<CaptureError> failure_;
    bool paused_ = false;
    AudioIO::AudioConverter converter_;
    std::vector<float> converted_; // of the buffer at hand
};

} // namespace Sorvane
