// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "X11/X11Workspace.h"

#include "X11/ApplicationIdentity.h"
#include "X11/X11Application.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace DesktopLinux {

using DesktopServices::ProcessIdentifier;
using DesktopServices::RunningApplication;

namespace {

// As who a program asks for a window: on behalf of the user, who need not have touched the window.
constexpr std::uint32_t sourceIsPager = 2;

} // namespace

X11Workspace::X11Workspace(XConnection& connection)
    : connection_(connection)
{
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_.get(), connection_.root(), XCB_CW_EVENT_MASK, &events);
    const auto activeWindow = connection_.atom("_NET_ACTIVE_WINDOW");
    lastInFront_ = frontmost();
    events_ = connection_.observe([this, activeWindow](const xcb_generic_event_t& event) {
        if (kind(event) != XCB_PROPERTY_NOTIFY)
            return;
        const auto& change = as<xcb_property_notify_event_t>(event);
        if (change.window == connection_.root() && change.atom == activeWindow)
            activeWindowChanged();
    });
}

X11Workspace::~X11Workspace() = default;

std::shared_ptr<RunningApplication> X11Workspace::frontmostApplication() const
{
    return frontmost();
}

X11Workspace::Subscription X11Workspace::observeActivation(ActivationHandler handler)
{
    auto subscription = std::make_shared<ActivationHandler>(std::move(handler));
    handlers_.push_back(subscription);
    return subscription;
}

ProcessIdentifier X11Workspace::ownProcessIdentifier() const
{
    return ::getpid();
}

void X11Workspace::activate(const ProcessRun& process, xcb_window_t latestWindow)
{
    const bool isStillThere = latestWindow != XCB_WINDOW_NONE && processOfWindow(connection_, latestWindow) == process;
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = isStillThere ? latestWindow : topmostWindow(process);
    message.type = connection_.atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = sourceIsPager;
    if (message.window == XCB_WINDOW_NONE)
        return;
    xcb_send_event(connection_.get(), false, connection_.root(),
        XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
        reinterpret_cast<const char*>(&message));
    connection_.flush();
}

std::shared_ptr<X11Application> X11Workspace::frontmost() const
{
    const auto active = connection_.property(connection_.root(), connection_.atom("_NET_ACTIVE_WINDOW"));
    if (!active || active->numbers().empty() || active->numbers().front() == XCB_WINDOW_NONE)
        return nullptr;
    const auto window = active->numbers().front();
    const auto process = processOfWindow(connection_, window);
    return process ? application(*process, window) : nullptr;
}

std::shared_ptr<X11Application> X11Workspace::application(const ProcessRun& process, xcb_window_t window) const
{
    std::erase_if(applications_, [](const auto& known) { return known.second->isTerminated(); });
    auto found = applications_.find(process);
    if (found == applications_.end()) {
        auto identity = identify(connection_, entries_, window, process);
        found = applications_
                    .emplace(process, std::make_shared<X11Application>(self_.reference(), process, std::move(identity)))
                    .first;
    }
    found->second->sawWindow(window);
    return found->second;
}

xcb_window_t X11Workspace::topmostWindow(const ProcessRun& process)
{
    const auto list = connection_.property(connection_.root(), connection_.atom("_NET_CLIENT_LIST_STACKING"));
    auto windows = list ? list->numbers() : std::vector<std::uint32_t>();
    std::ranges::reverse(windows); // the lowest stands first
    const auto found
        = std::ranges::find_if(windows, [&](auto window) { return processOfWindow(connection_, window) == process; });
    return found == windows.end() ? xcb_window_t { XCB_WINDOW_NONE } : *found;
}

// Between two windows of one program there is none in front for a moment.
void X11Workspace::activeWindowChanged()
{
    const auto inFront = frontmost();
    if (!inFront || inFront == lastInFront_)
        return;
    lastInFront_ = inFront;
    std::erase_if(handlers_, [](const auto& handler) { return handler.expired(); });
    const auto present = handlers_;
    for (const auto& handler : present)
        if (const auto alive = handler.lock())
            (*alive)(inFront);
}

} // namespace DesktopLinux
