// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/CaptureError.h>

namespace Sorvane {

CaptureError CaptureError::conversion(const std::string& text)
{
    return { Case::conversion, "Audio conversion failed: " + text };
}

CaptureError CaptureError::unavailable()
{
    return { Case::unavailable, "The microphone is unavailable. Check your audio input in System Settings." };
}

} // namespace Sorvane
