// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

namespace Sorvane {

struct Composition;

// These prove that the models get ready, and return the process's exit status.

// Goes through a whole first run in a temporary directory, telling on standard output how far it has come: fresh
// downloads, a try of both models, and a second preparation without a network. Otherwise 1, after a line on standard
// error that says what failed. Nothing is left in the temporary directory in either case.
int checkFirstRun(const Composition& composition);

// Gets ready what this user has, without a network, and prints a line beginning "PASS: "; or 1 after a line on standard
// error that begins "Cached preparation failed: ".
int checkPreparationCache(const Composition& composition);

} // namespace Sorvane
