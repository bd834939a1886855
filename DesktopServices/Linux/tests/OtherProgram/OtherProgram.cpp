// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Another program on the display, for the desktop tests. It reads commands, a line each, and answers each with a line:
//
//     window CLASS          opens a window of this class, waits until it has the focus, answers its number
//     property NAME TEXT    of the window that was opened last
//     process NUMBER        says so of that window, in _NET_WM_PID
//     close                 that window
//     grab KEYCODE STATE    a key of the whole display: "granted" or "refused"
//     grab-server           nobody else is answered until this program ends
//     key                   the next press of a key in the window, waited for: "KEYCODE STATE"
//
// What it does with the clipboard stands in Clipboard.h.

#include "Clipboard.h"

#include <poll.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>

namespace {

using Arguments = std::istringstream;

xcb_window_t openWindow(Display& display, const std::string& name)
{
    const auto window = xcb_generate_id(display.connection);
    const std::uint32_t events = XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_KEY_PRESS;
    xcb_create_window(display.connection, XCB_COPY_FROM_PARENT, window, display.root, 0, 0, 200, 100, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    const auto names = name + '\0' + name + '\0';
    xcb_change_property(display.connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
        std::uint32_t(names.size()), names.data());
    xcb_map_window(display.connection, window);
    display.waitFor([&](const xcb_generic_event_t& event) {
        return (event.response_type & 0x7f) == XCB_FOCUS_IN
            && reinterpret_cast<const xcb_focus_in_event_t&>(event).event == window;
    });
    return window;
}

std::string grabKey(Display& display, Arguments& arguments)
{
    int keyCode = 0;
    int state = 0;
    arguments >> keyCode >> state;
    auto* const error = xcb_request_check(display.connection,
        xcb_grab_key_checked(display.connection, false, display.root, std::uint16_t(state), xcb_keycode_t(keyCode),
            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    const bool isGranted = !error;
    std::free(error);
    return isGranted ? "granted" : "refused";
}

std::string nextKey(Display& display)
{
    while (display.keys.empty())
        display.waitFor([&](const xcb_generic_event_t& event) {
            display.handle(event);
            return true;
        });
    const auto key = display.keys.front();
    display.keys.pop_front();
    return key;
}

class Program {
public:
    std::string run(const std::string& line)
    {
        Arguments arguments(line);
        std::string command;
        arguments >> command;
        const auto known = commands_.find(command);
        return known == commands_.end() ? clipboard_.run(command, arguments) : known->second(arguments);
    }

    Display& display() { return display_; }

private:
    std::string property(Arguments& arguments)
    {
        std::string name;
        std::string value;
        arguments >> name >> value;
        setProperty(name, XCB_ATOM_STRING, 8, std::uint32_t(value.size()), value.data());
        return "set";
    }

    std::string process(Arguments& arguments)
    {
        std::uint32_t number = 0;
        arguments >> number;
        setProperty("_NET_WM_PID", XCB_ATOM_CARDINAL, 32, 1, &number);
        return "set";
    }

    void setProperty(
        const std::string& name, xcb_atom_t type, std::uint8_t format, std::uint32_t count, const void* data)
    {
        xcb_change_property(
            display_.connection, XCB_PROP_MODE_REPLACE, window_, display_.atom(name), type, format, count, data);
        display_.synchronise();
    }

    Display display_;
    Clipboard clipboard_ { display_ };
    xcb_window_t window_ = XCB_WINDOW_NONE;
    std::map<std::string, std::function<std::string(Arguments&)>> commands_ {
        { "window",
            [this](Arguments& arguments) {
                std::string name;
                arguments >> name;
                window_ = openWindow(display_, name);
                return std::to_string(window_);
            } },
        { "property", [this](Arguments& arguments) { return property(arguments); } },
        { "process", [this](Arguments& arguments) { return process(arguments); } },
        { "close",
            [this](Arguments&) {
                xcb_destroy_window(display_.connection, window_);
                display_.synchronise();
                return "closed";
            } },
        { "grab", [this](Arguments& arguments) { return grabKey(display_, arguments); } },
        { "grab-server",
            [this](Arguments&) {
                xcb_grab_server(display_.connection);
                display_.synchronise();
                return "grabbed";
            } },
        { "key", [this](Arguments&) { return nextKey(display_); } },
    };
};

// A line, while what others ask of this program is answered; false at the end.
bool nextLine(Display& display, std::string& line)
{
    static std::string unread;
    while (unread.find('\n') == unread.npos) {
        display.handleEvents();
        pollfd awaited[] { { STDIN_FILENO, POLLIN, 0 }, { xcb_get_file_descriptor(display.connection), POLLIN, 0 } };
        ::poll(awaited, 2, -1);
        if (awaited[0].revents == 0)
            continue;
        char bytes[4096];
        const auto count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0)
            return false;
        unread.append(bytes, size_t(count));
    }
    line = unread.substr(0, unread.find('\n'));
    unread.erase(0, line.size() + 1);
    return true;
}

} // namespace

int main()
{
    Program program;
    std::cout << "ready" << std::endl;
    for (std::string line; nextLine(program.display(), line);)
        std::cout << program.run(line) << std::endl;
}
