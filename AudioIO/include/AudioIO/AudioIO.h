// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace AudioIO {

// The bytes of WAV::encode().
std::vector<uint8_t> encodeWAV(std::span<const float> samples, int64_t sampleRate, int64_t channels);

// Writes the same bytes to a file, which replaces what stood there, in blocks of bounded size.
//
// Errors: AudioIOError decodeFailed   "cannot create " and the path
//         std::system_error           a write failed; the file keeps what was written so far
void writeWAV(std::span<const float> samples, int64_t sampleRate, int64_t channels, const std::filesystem::path& path);

} // namespace AudioIO
