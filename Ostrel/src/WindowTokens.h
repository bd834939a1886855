// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <vector>

namespace Ostrel {

// What the decoder found in one window: three arrays of equal length. Frames are encoder frames, counted from
// the start of the window.
struct WindowTokens {
    std::vector<int64_t> tokens; // indices into the vocabulary
    std::vector<int64_t> frames; // where each was emitted
    std::vector<int64_t> ends; // where its span ends; may lie past the window

    bool operator==(const WindowTokens&) const = default;
};

} // namespace Ostrel
