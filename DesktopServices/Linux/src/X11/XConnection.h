// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "DescriptorWatch.h"

#include <PlatformSupport/WeakSelf.h>

#include <xcb/xcb.h>
#include <xcb/xcbext.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace DesktopLinux {

struct XFree {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T> using XReply = std::unique_ptr<T, XFree>;
using XEvent = XReply<xcb_generic_event_t>;

// A property of a window, in the form in which it was written.
struct XProperty {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 8; // bits of an element
    std::vector<std::byte> bytes;

    std::vector<std::uint32_t> numbers() const; // of format 32; else none
    std::string text() const; // up to the first zero, with what is not UTF-8 replaced
};

// The connection to the X server that all services share.
//
// Main thread only, which is the executor's. A thread beside it waits for the server to say something, and nothing
// else. Whoever asks for a reply waits for it on the main thread, for a bounded time: the server answers at once
// unless another program has frozen it. Events that arrive meanwhile are kept and handed out by the main loop.
class XConnection {
public:
    using Handler = std::function<void(const xcb_generic_event_t&)>;
    using Subscription = std::shared_ptr<void>; // ends the observation when it goes

    // The longest that a reply is waited for. Replies take some 0.1 ms.
    static constexpr std::chrono::milliseconds replyTime { 500 };

    // To the display that $DISPLAY names.
    //
    // Errors: NoDisplayError
    explicit XConnection(PlatformSupport::Executor mainThread);
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;
    ~XConnection();

    xcb_connection_t* get() const { return connection_.get(); }
    xcb_window_t root() const { return root_; }

    // The reply to a request, such as reply<xcb_get_property_reply_t>(xcb_get_property(...)). Null if the server
    // refuses it, or does not answer in time.
    template <typename Reply, typename Cookie> XReply<Reply> reply(Cookie cookie)
    {
        return XReply<Reply>(static_cast<Reply*>(waitForReply(cookie.sequence)));
    }

    // Whether a checked request was carried out.
    bool succeeds(xcb_void_cookie_t cookie);

    // Sends what was asked for, and waits until the server has done it: every event up to now has arrived. False if
    // the server does not answer in time.
    bool synchronise();

    // Sends what was asked for. Every function here that changes something ends with it, or with a reply.
    void flush();

    // Called for each event from now on, in order, by the main loop, errors (response type 0) included.
    [[nodiscard]] Subscription observe(Handler handler);

    // The same, but also called by handOutUrgent().
    [[nodiscard]] Subscription observeUrgent(Handler handler);

    // Shows the events that have come until now to those who must not wait for the main loop.
    void handOutUrgent();

    // Shows the events that have arrived, but were not handed out yet.
    template <typename Visitor> void visitWaiting(Visitor visit) const
    {
        for (const auto& waiting : events_)
            visit(*waiting.event);
    }

    xcb_atom_t atom(std::string_view name); // made if there is none; none if the server does not answer
    std::string atomName(xcb_atom_t atom); // empty if there is no such atom

    // Nothing if the window is gone, or does not have the property, or it is larger than that.
    std::optional<XProperty> property(xcb_window_t window, xcb_atom_t name, size_t largestBytes = 1 << 20);
    std::optional<XProperty> takeProperty(xcb_window_t window, xcb_atom_t name, size_t largestBytes);

    // A window of our own that nobody sees, for properties.
    xcb_window_t makeWindow(std::uint32_t eventMask);

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    using Handlers = std::vector<std::weak_ptr<Handler>>;

    struct WaitingEvent {
        XEvent event;
        bool wasUrgent = false; // and has been shown as such
    };

    static Subscription add(Handlers& handlers, Handler handler);
    static void show(Handlers& handlers, const xcb_generic_event_t& event);
    void* waitForReply(unsigned sequence);
    std::optional<XProperty> readProperty(xcb_window_t window, xcb_atom_t name, size_t largestBytes, bool isTaken);
    bool waitForServer(std::chrono::steady_clock::time_point end) const;
    void receive();
    void handOutLater();
    void handOut();

    PlatformSupport::Executor mainThread_;
    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    std::deque<WaitingEvent> events_;
    bool willHandOut_ = false;
    Handlers handlers_;
    Handlers urgentHandlers_;
    std::map<std::string, xcb_atom_t, std::less<>> atoms_;
    std::optional<DescriptorWatch> watch_;
    PlatformSupport::WeakSelf<XConnection> self_ { this };
};

// The kind of an event, whoever sent it.
inline std::uint8_t kind(const xcb_generic_event_t& event)
{
    return event.response_type & 0x7f;
}

template <typename Event> const Event& as(const xcb_generic_event_t& event)
{
    return reinterpret_cast<const Event&>(event);
}

} // namespace DesktopLinux
