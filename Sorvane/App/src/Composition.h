// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/CleanupAssets.h>

#include <functional>
#include <string>

namespace Sorvane {

// What a program of this kind is made with.
struct Composition {
    std::string version;

    // The cleanup's files. Pinned in the program that people get; a test's program may have its own.
    std::function<CleanupAssets()> cleanupAssets = CleanupAssets::pinned;
};

} // namespace Sorvane
