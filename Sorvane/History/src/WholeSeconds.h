// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>

namespace Sorvane {

// A length of time for the eye: rounded, and 0 if it is negative or no number.
int64_t wholeSeconds(double seconds);

} // namespace Sorvane
