// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <AudioIO/PCM.h>

#include <cstdint>
#include <span>
#include <vector>

// Whole RIFF/WAVE files in memory.
namespace AudioIO::WAV {

// A canonical file: a 44-byte header and 16-bit samples.
//
//   samples   interleaved; clamped to -1..1, times 32767, halves away from zero; NaN becomes 32767
//
// A number wider than its header field keeps its low bytes.
std::vector<uint8_t> encode(std::span<const float> samples, int64_t sampleRate, int64_t channels);

// Reads integer samples of 8, 16, 24 and 32 bits and floats of 32 and 64 bits. Whole numbers are divided by
// 2^(bits - 1), so what encode() wrote comes back very slightly quieter. A data chunk that claims more than
// the file holds is cut to what is there.
//
// Errors: WAVError notRIFF, truncated, unsupported
PCM decode(std::span<const uint8_t> file);

} // namespace AudioIO::WAV
