// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/ProcessIdentifier.h>

#include <optional>
#include <string>

namespace DesktopServices {

// A program with windows, as the user knows it. The object stays valid when the program ends; one that is started
// again is another object.
//
// Main thread only; nothing here waits for the program.
class RunningApplication {
public:
    RunningApplication() = default;
    RunningApplication(const RunningApplication&) = delete;
    RunningApplication& operator=(const RunningApplication&) = delete;
    virtual ~RunningApplication() = default;

    virtual ProcessIdentifier processIdentifier() const = 0;

    // The name in the user's language.
    virtual std::optional<std::string> localizedName() const = 0;

    // The lasting name of the program, such as "org.mozilla.firefox".
    virtual std::optional<std::string> bundleIdentifier() const = 0;

    virtual bool isTerminated() const = 0;

    // Whether its windows are pages of a browser engine that it brings along, which show no elements until asked to.
    virtual bool isBuiltOnElectron() const = 0;

    // Asks for the program to come to the front. It comes later, or not at all.
    virtual void activate() = 0;
};

} // namespace DesktopServices
