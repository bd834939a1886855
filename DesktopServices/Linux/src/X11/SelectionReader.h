// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "TimedSignal.h"
#include "X11/XConnection.h"

#include <optional>

namespace DesktopLinux {

// Reads what another program offers, form after form. The program may answer when it likes, or never, or without end:
// it has so long for each step, so long for all, and so many bytes.
//
// Main thread only. What comes after the reader is gone reaches nobody.
class SelectionReader {
public:
    // A program that does nothing for so long is taken for frozen.
    static constexpr std::chrono::milliseconds timeForStep { 400 };
    static constexpr std::chrono::milliseconds timeForAll { 3000 };
    static constexpr size_t largestContent = size_t { 256 } << 20; // bytes

    SelectionReader(XConnection& connection, PlatformSupport::Executor mainThread, PlatformSupport::Clock& clock,
        xcb_atom_t selection);
    ~SelectionReader();
    SelectionReader(const SelectionReader&) = delete;
    SelectionReader& operator=(const SelectionReader&) = delete;

    // Nothing if the owner does not offer it, or does not answer in time.
    //
    // Errors: CancellationError
    PlatformSupport::Awaitable<std::optional<XProperty>> read(xcb_atom_t target);

    // Whether it makes sense to ask for more.
    bool isAnswering() const { return isAnswering_; }

private:
    void handle(const xcb_generic_event_t& event);
    PlatformSupport::Awaitable<bool> untilTrue(const bool& condition);
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
