// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Display.h"

#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

// What the other program does with the clipboard:
//
//     offer TARGET TYPE FORMAT SIZE   so many bytes, the next time it copies; "~" in the names stands for a space
//     offer-text TARGET TEXT          the same for a word, of the type UTF8_STRING
//     copy                            what was offered
//     ignore-after NUMBER             so many answers to those who ask for what was copied
//     stop-after NUMBER               it stops, as when it is frozen, instead of the next answer after so many
//     endless                         from now on it hands out pieces without end
//     await-ignored                   until somebody was not answered
//     vanish                          closes the window that owns the clipboard
//     paste TARGET                    answers "TYPE FORMAT SIZE CHECKSUM", or "refused"
//     paste-text TARGET               answers the word
//     paste-primary TARGET            the same, of what is selected
//     request TARGET                  asks, and takes nothing of what comes
class Clipboard {
public:
    explicit Clipboard(Display& display);

    std::string run(const std::string& command, std::istringstream& arguments);

private:
    struct Content {
        xcb_atom_t type = XCB_ATOM_NONE;
        std::uint8_t format = 8;
        std::string bytes;
    };
    struct Transfer {
        xcb_window_t window;
        xcb_atom_t property;
        Content content;
    };

    std::string offer(std::istringstream& arguments, bool isText);
    std::string copy();
    std::optional<Content> paste(std::istringstream& arguments, xcb_atom_t selection);
    void handle(const xcb_generic_event_t& event);
    bool answer(const xcb_selection_request_event_t& request);
    void stopIfToldTo();
    void sendPiece(xcb_window_t window, xcb_atom_t property);
    void set(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format, const std::string& bytes);
    Content take();

    Display& display_;
    xcb_window_t window_;
    std::map<xcb_atom_t, Content> next_;
    std::map<xcb_atom_t, Content> copied_;
    std::vector<Transfer> transfers_;
    std::optional<int> answersLeft_;
    std::optional<int> answersBeforeStop_;
    bool isEndless_ = false;
};
