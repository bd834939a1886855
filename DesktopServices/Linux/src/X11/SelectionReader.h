// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "TimedSignal.h"
#include "X11/XConnection.h"

#include <optional>

namespace DesktopLinux {

// Reads what another program offers, form after form. The program may answer when it likes, or never, or without end:
// it has so long to tell its forms, so long for each step, so long for all, and so many bytes.
//
// Main thread only. What comes after the reader is gone reaches nobody.
class SelectionReader {
public:
    // Which forms there are, a program knows: one that does not tell in this time is taken for frozen.
    static constexpr std::chrono::milliseconds timeToTell { 400 };

    // Some forms it makes only when it is asked: a large picture as PNG takes a second and more.
    static constexpr std::chrono::milliseconds timeForStep { 2500 };
    static constexpr std::chrono::milliseconds timeForAll { 5000 };
    static constexpr size_t largestContent = size_t { 256 } << 20; // bytes

    SelectionReader(XConnection& connection, PlatformSupport::Executor mainThread, PlatformSupport::Clock& clock,
        xcb_atom_t selection);
    ~SelectionReader();
    SelectionReader(const SelectionReader&) = delete;
    SelectionReader& operator=(const SelectionReader&) = delete;

    // The forms that there are; none if the owner does not answer in time.
    //
    // Errors: CancellationError
    PlatformSupport::Awaitable<std::vector<xcb_atom_t>> targets();

    // Nothing if the owner does not offer it, or does not answer in time.
    //
    // Errors: CancellationError
    PlatformSupport::Awaitable<std::optional<XProperty>> read(xcb_atom_t target);

    // Whether it makes sense to ask for more.
    bool isAnswering() const { return isAnswering_; }

private:
    void handle(const xcb_generic_event_t& event);
    PlatformSupport::Awaitable<std::optional<XProperty>> read(xcb_atom_t target, std::chrono::milliseconds limit);
    PlatformSupport::Awaitable<bool> untilTrue(const bool& condition, std::chrono::milliseconds limit);
    PlatformSupport::Awaitable<std::optional<XProperty>> readIncrements();
    std::optional<XProperty> takeValue();

    XConnection& connection_;
    PlatformSupport::Clock& clock_;
    xcb_atom_t selection_;
    xcb_atom_t valueProperty_;
    xcb_atom_t increments_;
    xcb_window_t window_;
    PlatformSupport::Clock::Instant end_;
    size_t bytesLeft_ = largestContent;
    bool isAnswering_ = true;
    bool isNotified_ = false; // these three about the form at hand
    bool isRefused_ = false;
    bool isValueNew_ = false;
    TimedSignal progress_;
    XConnection::Subscription events_;
};

} // namespace DesktopLinux
