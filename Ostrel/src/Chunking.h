// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "AudioBuffer.h"
#include "Geometry.h"

namespace Ostrel {

// Where the window after the one that starts at sample `after` starts: a quiet spot within the last
// `searchSeconds` of the window, so that a word is rarely sliced. Both are absolute sample indices, and only
// samples of that range are read; they must be held.
//
// Of the 20 ms cells that are at most twice as loud as the quietest, the one wins whose energy, weighed up to
// twice for its distance from the window's end, is lowest; of equals the latest. Without any cell the next
// window starts at this one's end.
int64_t nextBoundary(int64_t after, const AudioBuffer& audio, const Geometry& geometry, double searchSeconds);

} // namespace Ostrel
