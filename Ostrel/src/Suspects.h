// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "AudioBuffer.h"
#include "Geometry.h"
#include "WindowTokens.h"

#include <cstdint>
#include <optional>
#include <span>

// Windows in which the recognizer seems to have lost speech, and how they are tried again.
namespace Ostrel {

// A second try of a window, begun at another sample.
struct Rescue {
    int64_t start = 0;
    WindowTokens result;
};

// One window of a batch. Samples are counted from the stream's start.
struct Window {
    int64_t start = 0;
    int64_t stop = 0; // where its samples end
    int64_t validFrames = 0;
    WindowTokens result;
    std::optional<Rescue> rescue;
};

// Encoder frames between two emitted tokens, or between one and the window's start or end.
struct Gap {
    int64_t start = 0;
    int64_t end = 0;

    int64_t length() const noexcept { return end - start; }
    bool operator==(const Gap&) const = default;
};

// The samples of a second try.
struct RetryRange {
    int64_t start = 0;
    int64_t stop = 0;

    bool operator==(const RetryRange&) const = default;
};

// The longest gap; of equals the first.
Gap largestGap(std::span<const int64_t> frames, int64_t validFrames);

// A window is suspect when it has sound and gave no token, or when its largest gap is above 2.5 seconds and the
// audio there is not clearly quieter than the window's average.
bool isSuspect(const Window& window, const AudioBuffer& audio, const Geometry& geometry);

// A window without tokens is tried again from its start, a little shorter, so that its frames fall differently;
// any other from a quiet spot near the start of its largest gap.
RetryRange retryRange(const Window& window, const AudioBuffer& audio, const Geometry& geometry);

// A second try failed when it gave no token either, or is silent for more than its last 2.5 seconds.
bool retryFailed(const WindowTokens& result, int64_t validFrames, const Geometry& geometry);

} // namespace Ostrel
