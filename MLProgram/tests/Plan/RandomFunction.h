// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Program.h"

namespace MLProgram {

// A sound function of about a dozen operations, such as speech models are made of, put together at random; always
// the same for the same seed. Its values stay of moderate size, and no operation jumps, so that two ways of
// computing it must agree closely.
Function randomFunction(unsigned seed);

} // namespace MLProgram
