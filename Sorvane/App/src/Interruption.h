// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/FileDescriptor.h>

#include <csignal>
#include <functional>
#include <thread>

namespace Sorvane {

// While it lives, who asks this process to end (Ctrl-C, a closed terminal, a shutdown) is told to `onRequest` instead
// of ending it on the spot, so that there is time to clear up. A second request changes nothing.
//
// It is made before any other thread is: they all inherit that these signals do not reach them.
class Interruption {
public:
    // `onRequest` is called on a thread of this object's own.
    // Errors: std::system_error
    explicit Interruption(std::function<void()> onRequest);
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
    ~Interruption();

private:
    void watch() const;

    std::function<void()> onRequest_;
    sigset_t before_ {};
    PlatformSupport::FileDescriptor signals_;
    PlatformSupport::FileDescriptor end_; // an event, readable when this object goes
    std::jthread thread_;
};

} // namespace Sorvane
