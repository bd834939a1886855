// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <Sorvane/RawValue.h>
#include <Sorvane/TranscriptMode.h>

namespace Sorvane {

std::string_view rawValue(TranscriptMode mode)
{
    switch (mode) {
    case TranscriptMode::clean:
        return "clean";
    case TranscriptMode::email:
        return "email";
    case TranscriptMode::raw:
        return "raw";
    }
    PlatformSupport::fatalError("no such transcript mode");
}

std::optional<TranscriptMode> transcriptMode(std::string_view rawValue)
{
    return caseWithRawValue(allTranscriptModes, rawValue);
}

std::string_view title(TranscriptMode mode)
{
    switch (mode) {
    case TranscriptMode::clean:
        return "Structured";
    case TranscriptMode::email:
        return "Email";
    case TranscriptMode::raw:
        return "Raw";
    }
    PlatformSupport::fatalError("no such transcript mode");
}

} // namespace Sorvane
