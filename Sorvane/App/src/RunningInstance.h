// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/FileDescriptor.h>

#include <stdexcept>

namespace Sorvane {

class AlreadyRunningError : public std::runtime_error {
public:
    AlreadyRunningError();
};

// Makes this process the only one of the application in its user's session, for as long as the object lives.
class RunningInstance {
public:
    // Errors: AlreadyRunningError; std::system_error if nobody can tell
    RunningInstance();

private:
    PlatformSupport::FileDescriptor lock_;
};

} // namespace Sorvane
