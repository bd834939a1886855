// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace Sorvane {

// What is done with a finished transcript.
enum class TranscriptMode { clean, email, raw };

inline constexpr std::array allTranscriptModes { TranscriptMode::clean, TranscriptMode::email, TranscriptMode::raw };

// As stored: "clean", "email", "raw".
std::string_view rawValue(TranscriptMode mode);
std::optional<TranscriptMode> transcriptMode(std::string_view rawValue);

// What the user reads.
std::string_view title(TranscriptMode mode);

} // namespace Sorvane
