// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <functional>

namespace Ostrel {

// How far a transcription has come.
struct Progress {
    double fractionCompleted = 0; // 0 to 1
};

using ProgressCallback = std::function<void(Progress)>;

} // namespace Ostrel
