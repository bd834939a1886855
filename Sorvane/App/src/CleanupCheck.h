// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "CommandLine.h"

namespace Sorvane {

// These run the local model that is installed for this user, and return the process's exit status.

// Tidies the texts of a file, an array of objects with "input" and perhaps "mode", and prints a line of JSON for each:
// what came out, whether it is the original, and how long it took. Without a word, 1 if the file cannot be read.
int evaluateCleanup(const EvaluateCleanupCommand& command);

// Tidies a fixed text and prints a line beginning "PASS: "; or 1 after a line on standard error that begins
// "Cleanup check failed: ".
int checkCleanup();

} // namespace Sorvane
