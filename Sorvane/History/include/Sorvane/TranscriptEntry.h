// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>
#include <PlatformSupport/UUID.h>
#include <Sorvane/CodingHarness.h>

#include <deque>
#include <optional>
#include <string>

namespace Sorvane {

// One stored transcript: a plain value, identified by `id`.
struct TranscriptEntry {
    PlatformSupport::UUID id;
    std::string text; // what the user got; the cleaned text once there is one
    std::string appName; // of the destination
    std::optional<std::string> bundleIdentifier; // of the destination
    PlatformSupport::Clock::Date createdAt;
    double duration = 0; // of the recording, in seconds
    std::optional<CodingHarness> harness; // the coding agent at the destination
    std::optional<std::string> rawText; // the transcript as it stood before a cleanup changed it

    bool operator==(const TranscriptEntry&) const = default;

    // Minutes and seconds: "1:15" for 75.4 seconds. A negative duration reads "0:00".
    std::string durationLabel() const;
};

// A list of transcripts. A deque, since the newest is put in front of the others.
using TranscriptList = std::deque<TranscriptEntry>;

} // namespace Sorvane
