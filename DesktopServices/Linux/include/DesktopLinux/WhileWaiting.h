// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <functional>

namespace DesktopLinux {

// What the main thread goes on with while it waits for another program: that program may be waiting for it.
struct WhileWaiting {
    int descriptor = -1; // it can be read from when there is something to do
    std::function<void()> work; // what there is; called as often as one likes
};

} // namespace DesktopLinux
