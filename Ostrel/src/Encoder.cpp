// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Encoder.h"

#include "Features.h"
#include "Framing.h"

#include <PlatformSupport/Precondition.h>

#include <algorithm>

namespace Ostrel {

using PlatformSupport::Float16;
using PlatformSupport::toFloat16;

namespace {

constexpr float maskedBias = -40000.0F; // keeps attention off the padding, and fits 16 bits

// The first `count` values become `first`, the others `rest`.
void split(std::span<Float16> values, int64_t count, float first, float rest)
{
    const auto border = values.begin() + count;
    std::fill(values.begin(), border, toFloat16(first));
    std::fill(border, values.end(), toFloat16(rest));
}

} // namespace

Encoder::Encoder(const Configuration& c, Stage& mel, Stage& encoder)
    : configuration_(c)
    , mel_(mel)
    , encoder_(encoder)
    , rows_(inputBuffer(mel, "audio_rows", { 1, c.hopLength, 1, c.nRows }))
    , melOut_(outputBuffer(mel, "mel", { 1, c.nMels, 1, c.validFrames }))
    , keyBias_(inputBuffer(encoder, "key_bias", { 1, c.encFrames, 1, 1 }))
    , padMask_(inputBuffer(encoder, "pad_mask", { 1, 1, 1, c.encFrames }))
    , melMask_(inputBuffer(mel, "mel_mask", { 1, 1, 1, c.validFrames }))
    , encOut_(outputBuffer(encoder, "enc_proj", { 1, c.jointHidden, 1, c.encFrames }))
    , melProvider_(provider({ { "audio_rows", rows_ }, { "mel_mask", melMask_ } }))
    , encoderProvider_(provider({ { "mel", melOut_ }, { "key_bias", keyBias_ }, { "pad_mask", padMask_ } }))
    , melOptions_(backings({ { "mel", melOut_ } }))
    , encoderOptions_(backings({ { "enc_proj", encOut_ } }))
{
    requireInput(encoder, "mel", melOut_.array()->shape());
    padMask_.fill(toFloat16(1));
}

void Encoder::encode(std::span<const float> window, int64_t validFrames, std::span<Float16> into)
{
    frame(window, configuration_, rows_.values());
    maskMelFrames(static_cast<int64_t>(window.size()));
    mel_.predict(melProvider_, melOptions_);
    biasKeys(validFrames);
    encoder_.predict(encoderProvider_, encoderOptions_);
    std::ranges::copy(encOut_.values(), into.begin());
}

void Encoder::maskMelFrames(int64_t sampleCount)
{
    PlatformSupport::precondition(configuration_.validFrames >= 1, "a full window has no mel frames");
    const int64_t frames = sampleCount / configuration_.hopLength + 1;
    split(melMask_.values(), std::clamp<int64_t>(frames, 1, configuration_.validFrames), 1, 0);
}

void Encoder::biasKeys(int64_t validFrames)
{
    split(keyBias_.values(), std::clamp<int64_t>(validFrames, 1, configuration_.encFrames), 0, maskedBias);
}

} // namespace Ostrel
