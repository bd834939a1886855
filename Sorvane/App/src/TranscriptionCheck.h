// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "CommandLine.h"

namespace Sorvane {

// Transcribes one audio file with the engine's defaults and prints the result. Returns the process's exit
// status: 0, or 1 after a line on standard error that begins "Transcription failed: ".
int transcribeFile(const TranscribeCommand& command);

} // namespace Sorvane
