// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <deque>
#include <functional>
#include <memory>
#include <string>

// The other program's connection to the X server. It waits for replies as long as it takes.
struct Display {
    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };
    using Event = std::unique_ptr<xcb_generic_event_t, Free>;
    using Handler = std::function<void(const xcb_generic_event_t&)>;

    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    Handler handler; // of the events that nobody waits for
    std::deque<std::string> keys; // that were pressed

    xcb_atom_t atom(const std::string& name) const
    {
        const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(xcb_intern_atom_reply(
            connection, xcb_intern_atom(connection, false, std::uint16_t(name.size()), name.data()), nullptr));
        return reply ? reply->atom : xcb_atom_t { XCB_ATOM_NONE };
    }

    std::string atomName(xcb_atom_t atom) const
    {
        const std::unique_ptr<xcb_get_atom_name_reply_t, Free> reply(
            xcb_get_atom_name_reply(connection, xcb_get_atom_name(connection, atom), nullptr));
        return reply ? std::string(xcb_get_atom_name_name(reply.get()), reply->name_len) : "";
    }

    void synchronise() const
    {
        Free()(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    }

    void waitFor(const std::function<bool(const xcb_generic_event_t&)>& isWanted)
    {
        xcb_flush(connection);
        while (const Event event { xcb_wait_for_event(connection) }) {
            if (isWanted(*event))
                return;
            handle(*event);
        }
        std::exit(1);
    }

    void handleEvents()
    {
        while (const Event event { xcb_poll_for_event(connection) })
            handle(*event);
        xcb_flush(connection);
        if (xcb_connection_has_error(connection))
            std::exit(1);
    }

    void handle(const xcb_generic_event_t& event)
    {
        if ((event.response_type & 0x7f) == XCB_KEY_PRESS) {
            const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(event);
            keys.push_back(std::to_string(press.detail) + " " + std::to_string(press.state));
        }
        if (handler)
            handler(event);
        xcb_flush(connection);
    }
};
