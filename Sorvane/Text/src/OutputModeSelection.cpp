// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <Sorvane/OutputModeSelection.h>
#include <Sorvane/RawValue.h>

namespace Sorvane {

std::string_view rawValue(OutputModeSelection selection)
{
    if (selection == OutputModeSelection::automatic)
        return "auto";
    return rawValue(resolved(selection, TranscriptMode::clean));
}

std::optional<OutputModeSelection> outputModeSelection(std::string_view rawValue)
{
    return caseWithRawValue(allOutputModeSelections, rawValue);
}

std::string_view title(OutputModeSelection selection)
{
    if (selection == OutputModeSelection::automatic)
        return "Auto";
    return title(resolved(selection, TranscriptMode::clean));
}

std::string_view symbol(OutputModeSelection selection)
{
    switch (selection) {
    case OutputModeSelection::automatic:
        return "sparkles";
    case OutputModeSelection::clean:
        return "wand.and.stars";
    case OutputModeSelection::email:
        return "envelope";
    case OutputModeSelection::raw:
        return "waveform";
    }
    PlatformSupport::fatalError("no such output mode selection");
}

TranscriptMode resolved(OutputModeSelection selection, TranscriptMode detected)
{
    switch (selection) {
    case OutputModeSelection::automatic:
        return detected;
    case OutputModeSelection::clean:
        return TranscriptMode::clean;
    case OutputModeSelection::email:
        return TranscriptMode::email;
    case OutputModeSelection::raw:
        return TranscriptMode::raw;
    }
    PlatformSupport::fatalError("no such output mode selection");
}

} // namespace Sorvane
