// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Composition.h>

namespace Acceptance {

// The composition of the product but for the cleanup's files: those are pinned in the JSON file that $TEST_PINS names,
// {"version", "weights": {"url", "bytes", "sha256"}, "runtime": {...}}.
Sorvane::Composition testComposition();

} // namespace Acceptance
