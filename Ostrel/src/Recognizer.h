// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "WindowTokens.h"

#include <PlatformSupport/Float16.h>

#include <cstdint>
#include <span>
#include <vector>

namespace Ostrel {

// What a run over long audio needs of the neural part: windows to projections, projections to tokens.
class Recognizer {
public:
    virtual ~Recognizer() = default;

    // See Encoder::encode().
    virtual void encode(std::span<const float> window, int64_t validFrames, std::span<PlatformSupport::Float16> into)
        = 0;

    // See Decoder::decode().
    virtual std::vector<WindowTokens> decode(
        std::span<const PlatformSupport::Float16> projections, std::span<const int64_t> valids)
        = 0;
};

} // namespace Ostrel
