// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <functional>

namespace Sorvane {

// Told how much of something is done, 0 to 1. Any thread.
using PreparationProgress = std::function<void(double)>;

} // namespace Sorvane
