// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "WindowTokens.h"

#include <Ostrel/Word.h>

#include <span>
#include <string>
#include <vector>

namespace Ostrel {

// Makes words of a window's tokens. A piece that begins with "▁" (U+2581) starts a word, any other continues it;
// "<...>" pieces and tokens outside the vocabulary are dropped. Encoder frame f is the time
// f x secondsPerFrame + timeOffset.
//
// Example: "▁he", "llo", "▁world" at frames 0, 2, 5 are "hello" from frame 0 and "world" from frame 5.
std::vector<Word> timedWords(
    const WindowTokens& window, std::span<const std::string> vocabulary, double secondsPerFrame, double timeOffset);

} // namespace Ostrel
