// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/TranscriptMode.h>

#include <array>
#include <optional>
#include <string_view>

namespace Sorvane {

// What the user picked. `automatic` becomes a TranscriptMode when a dictation begins; the others stand for the mode
// of their name.
enum class OutputModeSelection { automatic, clean, email, raw };

inline constexpr std::array allOutputModeSelections { OutputModeSelection::automatic, OutputModeSelection::clean,
    OutputModeSelection::email, OutputModeSelection::raw };

// As stored: "auto", "clean", "email", "raw".
std::string_view rawValue(OutputModeSelection selection);
std::optional<OutputModeSelection> outputModeSelection(std::string_view rawValue);

// What the user reads, and the name of the symbol beside it.
std::string_view title(OutputModeSelection selection);
std::string_view symbol(OutputModeSelection selection);

// The mode that a selection stands for, where `automatic` gives what was detected.
TranscriptMode resolved(OutputModeSelection selection, TranscriptMode detected);

} // namespace Sorvane
