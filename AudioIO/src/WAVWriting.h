// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

// The two pieces of a written WAV file, for whole files in memory and for files written block by block.
namespace AudioIO::WAV {

constexpr size_t headerSize = 44;
constexpr size_t bytesPerSample = 2;

// The header of a file with `sampleCount` samples, all channels counted.
std::array<uint8_t, headerSize> header(size_t sampleCount, int64_t sampleRate, int64_t channels);

// Writes samples.size() x bytesPerSample bytes, which is the size of `bytes`.
void encodeSamples(std::span<const float> samples, std::span<uint8_t> bytes);

} // namespace AudioIO::WAV
