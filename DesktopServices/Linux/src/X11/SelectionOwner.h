// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "X11/SelectionTarget.h"
#include "X11/XConnection.h"

#include <DesktopServices/ProcessIdentifier.h>
#include <PlatformSupport/Clock.h>

#include <set>
#include <span>
#include <vector>

namespace DesktopLinux {

// Offers content to all programs for as long as none else does: under CLIPBOARD what is copied, under PRIMARY what is
// selected.
//
// Main thread only. What has begun to be handed over is handed over to the end, also when the content changes.
class SelectionOwner {
public:
    SelectionOwner(XConnection& connection, PlatformSupport::Clock& clock, xcb_atom_t selection);
    ~SelectionOwner();
    SelectionOwner(const SelectionOwner&) = delete;
    SelectionOwner& operator=(const SelectionOwner&) = delete;

    // Takes the selection, with nothing in it. False if the server did not let it have it.
    bool own();
    void release();
    bool isOwner();

    // Whether the process has taken any of it since own() or release().
    bool wasTakenBy(DesktopServices::ProcessIdentifier process) const { return takers_.contains(process); }

    // Offers this from now on; nothing happens unless it owns the selection.
    bool offer(std::vector<SelectionTarget> targets);
    const std::vector<SelectionTarget>& offered() const { return targets_; }

private:
    // A large value on its way, which the other program takes piece by piece.
    struct Transfer {
        xcb_window_t window = XCB_WINDOW_NONE;
        xcb_atom_t property = XCB_ATOM_NONE;
        xcb_atom_t type = XCB_ATOM_NONE;
        std::uint8_t format = 8;
        SharedBytes bytes;
        size_t sent = 0;
        PlatformSupport::Clock::Instant latestProgress;
    };

    void handle(const xcb_generic_event_t& event);
    void handleRequest(const xcb_selection_request_event_t& request);
    bool answer(xcb_window_t window, xcb_atom_t target, xcb_atom_t property);
    bool answerSeveral(xcb_window_t window, xcb_atom_t property);
    void answerTargets(xcb_window_t window, xcb_atom_t property);
    void noteTaker(xcb_window_t window);
    void hand(xcb_window_t window, xcb_atom_t property, const SelectionTarget& target);
    void taken(xcb_window_t window, xcb_atom_t property);
    void forget(xcb_window_t window);
    void forgetFrozen();
    void listenTo(xcb_window_t window, bool isListening);
    void setProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format,
        std::span<const std::byte> bytes);
    xcb_timestamp_t serverTime();

    XConnection& connection_;
    PlatformSupport::Clock& clock_;
    xcb_atom_t selection_;
    xcb_window_t window_;
    xcb_timestamp_t since_ = XCB_CURRENT_TIME;
    std::vector<SelectionTarget> targets_;
    std::vector<Transfer> transfers_;
    std::set<DesktopServices::ProcessIdentifier> takers_;
    XConnection::Subscription events_;
};

} // namespace DesktopLinux
