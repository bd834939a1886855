// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <Sorvane/InsertionTarget.h>

#include <functional>
#include <string>

namespace Sorvane {

// How an insertion reaches its destination: one step each, so that whoever wants to change or watch a step can. All
// run on the main thread.
struct DestinationAccess {
    using Target = InsertionTarget;

    std::function<void(const Target&)> validate; // throws if the destination is not what it was
    std::function<bool(const Target&)> isAppActive; // whether the application is in front
    std::function<bool(const Target&)> isFocused;
    std::function<void(const Target&)> activate;
    std::function<void(const Target&)> focus; // whether it worked is told by isFocused
    std::function<PlatformSupport::Awaitable<void>(const std::string& text, const Target&)> paste;
    std::function<PlatformSupport::Awaitable<void>()> wait; // a moment between two looks; throws when cancelled
};

} // namespace Sorvane
