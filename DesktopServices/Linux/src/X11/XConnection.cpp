// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "X11/XConnection.h"

#include <DesktopLinux/X11Session.h>
#include <PlatformSupport/UTF8.h>

#include <poll.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace DesktopLinux {

using Clock = std::chrono::steady_clock;

std::vector<std::uint32_t> XProperty::numbers() const
{
    std::vector<std::uint32_t> numbers(format == 32 ? bytes.size() / sizeof(std::uint32_t) : 0);
    if (!numbers.empty())
        std::memcpy(numbers.data(), bytes.data(), numbers.size() * sizeof(std::uint32_t));
    return numbers;
}

std::string XProperty::text() const
{
    const std::string_view whole(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return PlatformSupport::repairedUTF8(whole.substr(0, whole.find('\0')));
}

XConnection::XConnection(PlatformSupport::Executor mainThread)
    : mainThread_(std::move(mainThread))
{
    int screenNumber = 0;
    connection_.reset(xcb_connect(nullptr, &screenNumber));
    if (xcb_connection_has_error(get()))
        throw NoDisplayError();
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(get()));
    for (; screenNumber > 0 && screen.rem > 1; --screenNumber)
        xcb_screen_next(&screen);
    root_ = screen.data->root;
    watch_.emplace(mainThread_, xcb_get_file_descriptor(get()), [this] { handOut(); });
}

XConnection::~XConnection() = default;

bool XConnection::succeeds(xcb_void_cookie_t cookie)
{
    if (!synchronise())
        return false;
    void* none = nullptr;
    xcb_generic_error_t* error = nullptr;
    xcb_poll_for_reply(get(), cookie.sequence, &none, &error);
    return !XReply<xcb_generic_error_t>(error) && !xcb_connection_has_error(get());
}

bool XConnection::synchronise()
{
    return reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(get())) != nullptr;
}

// Sending may take in what has come meanwhile, and then the descriptor has nothing to tell any more.
void XConnection::flush()
{
    xcb_flush(get());
    receive();
}

XConnection::Subscription XConnection::observe(Handler handler)
{
    return add(handlers_, std::move(handler));
}

XConnection::Subscription XConnection::observeUrgent(Handler handler)
{
    return add(urgentHandlers_, std::move(handler));
}

XConnection::Subscription XConnection::add(Handlers& handlers, Handler handler)
{
    auto subscription = std::make_shared<Handler>(std::move(handler));
    handlers.push_back(subscription);
    return subscription;
}

void XConnection::show(Handlers& handlers, const xcb_generic_event_t& event)
{
    std::erase_if(handlers, [](const auto& handler) { return handler.expired(); });
    const auto present = handlers;
    for (const auto& handler : present)
        if (const auto alive = handler.lock())
            (*alive)(event);
}

xcb_atom_t XConnection::atom(std::string_view name)
{
    if (const auto known = atoms_.find(name); known != atoms_.end())
        return known->second;
    const auto answer = reply<xcb_intern_atom_reply_t>(
        xcb_intern_atom(get(), false, static_cast<std::uint16_t>(name.size()), name.data()));
    if (!answer)
        return XCB_ATOM_NONE;
    return atoms_.emplace(name, answer->atom).first->second;
}

std::string XConnection::atomName(xcb_atom_t atom)
{
    const auto answer = reply<xcb_get_atom_name_reply_t>(xcb_get_atom_name(get(), atom));
    if (!answer)
        return {};
    return { xcb_get_atom_name_name(answer.get()), static_cast<size_t>(xcb_get_atom_name_name_length(answer.get())) };
}

std::optional<XProperty> XConnection::property(xcb_window_t window, xcb_atom_t name, size_t largestBytes)
{
    return readProperty(window, name, largestBytes, false);
}

std::optional<XProperty> XConnection::takeProperty(xcb_window_t window, xcb_atom_t name, size_t largestBytes)
{
    return readProperty(window, name, largestBytes, true);
}

std::optional<XProperty> XConnection::readProperty(
    xcb_window_t window, xcb_atom_t name, size_t largestBytes, bool isTaken)
{
    const auto words = static_cast<std::uint32_t>(std::min<size_t>(largestBytes / 4, UINT32_MAX / 4));
    const auto answer = reply<xcb_get_property_reply_t>(
        xcb_get_property(get(), isTaken, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, words));
    if (!answer || answer->type == XCB_ATOM_NONE || answer->bytes_after > 0)
        return std::nullopt;
    const auto* bytes = static_cast<const std::byte*>(xcb_get_property_value(answer.get()));
    return XProperty { answer->type, answer->format, { bytes, bytes + xcb_get_property_value_length(answer.get()) } };
}

xcb_window_t XConnection::makeWindow(std::uint32_t eventMask)
{
    const auto window = xcb_generate_id(get());
    xcb_create_window(get(), XCB_COPY_FROM_PARENT, window, root_, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
        XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &eventMask);
    return window;
}

void* XConnection::waitForReply(unsigned sequence)
{
    const auto end = Clock::now() + replyTime;
    flush();
    while (true) {
        receive();
        void* answer = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_poll_for_reply(get(), sequence, &answer, &error)) {
            const XReply<xcb_generic_error_t> refusal(error);
            return answer;
        }
        if (!waitForServer(end)) {
            xcb_discard_reply(get(), sequence);
            return nullptr;
        }
    }
}

bool XConnection::waitForServer(Clock::time_point end) const
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    pollfd server { xcb_get_file_descriptor(get()), POLLIN, 0 };
    return left.count() > 0 && !xcb_connection_has_error(get())
        && ::poll(&server, 1, static_cast<int>(left.count())) > 0;
}

void XConnection::receive()
{
    while (XEvent event { xcb_poll_for_event(get()) })
        events_.push_back({ std::move(event) });
    if (!events_.empty())
        handOutLater();
}

void XConnection::handOutLater()
{
    if (std::exchange(willHandOut_, true))
        return;
    mainThread_.execute([weak = self_.reference()] {
        if (auto* const self = weak.get())
            self->handOut();
    });
}

// They stay where they are, for the main loop. A handler may add to them, but takes none out.
void XConnection::handOutUrgent()
{
    flush();
    const auto next
        = [this] { return std::ranges::find_if(events_, [](const auto& waiting) { return !waiting.wasUrgent; }); };
    for (auto waiting = next(); waiting != events_.end(); waiting = next()) {
        waiting->wasUrgent = true;
        show(urgentHandlers_, *waiting->event);
    }
}

// A handler may wait for replies, by which more events arrive.
void XConnection::handOut()
{
    willHandOut_ = true;
    flush();
    while (!events_.empty()) {
        const WaitingEvent next = std::move(events_.front());
        events_.pop_front();
        if (!next.wasUrgent)
            show(urgentHandlers_, *next.event);
        show(handlers_, *next.event);
        if (events_.empty())
            flush();
    }
    willHandOut_ = false;
    if (xcb_connection_has_error(get()))
        watch_.reset(); // the display is gone: it would have something to say for ever
}

} // namespace DesktopLinux
