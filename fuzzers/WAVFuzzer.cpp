// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <AudioIO/WAV.h>
#include <AudioIO/WAVError.h>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    try {
        AudioIO::WAV::decode({ data, size });
    } catch (const AudioIO::WAVError&) { // refused, as it should be
    }
    return 0;
}
