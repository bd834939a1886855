// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "X11/SelectionReader.h"

#include <algorithm>
#include <utility>

namespace DesktopLinux {

using PlatformSupport::Awaitable;
using PlatformSupport::Clock;

SelectionReader::SelectionReader(
    XConnection& connection, PlatformSupport::Executor mainThread, Clock& clock, xcb_atom_t selection)
    : connection_(connection)
    , clock_(clock)
    , selection_(selection)
    , valueProperty_(connection.atom("SORVANE_SELECTION"))
    , increments_(connection.atom("INCR"))
    , window_(connection.makeWindow(XCB_EVENT_MASK_PROPERTY_CHANGE))
    , end_(clock.now() + timeForAll)
    , progress_(std::move(mainThread), clock)
    , events_(connection.observe([this](const xcb_generic_event_t& event) { handle(event); }))
{
}

SelectionReader::~SelectionReader()
{
    xcb_destroy_window(connection_.get(), window_);
    connection_.flush();
}

Awaitable<std::vector<xcb_atom_t>> SelectionReader::targets()
{
    const auto value = co_await read(connection_.atom("TARGETS"), timeToTell);
    co_return value ? value->numbers() : std::vector<xcb_atom_t>();
}

Awaitable<std::optional<XProperty>> SelectionReader::read(xcb_atom_t target)
{
    return read(target, timeForStep);
}

Awaitable<std::optional<XProperty>> SelectionReader::read(xcb_atom_t target, std::chrono::milliseconds limit)
{
    isNotified_ = isRefused_ = false;
    xcb_delete_property(connection_.get(), window_, valueProperty_);
    xcb_convert_selection(connection_.get(), window_, selection_, target, valueProperty_, XCB_CURRENT_TIME);
    connection_.flush();
    isAnswering_ = co_await untilTrue(isNotified_, limit);
    if (!isAnswering_ || isRefused_)
        co_return std::nullopt;
    auto value = takeValue();
    if (value && value->type == increments_)
        co_return co_await readIncrements();
    co_return value;
}

// The owner writes the value piece by piece, each once the one before it is taken; an empty one is the end.
Awaitable<std::optional<XProperty>> SelectionReader::readIncrements()
{
    XProperty whole;
    while (true) {
        isAnswering_ = co_await untilTrue(isValueNew_, timeForStep);
        const auto piece = isAnswering_ ? takeValue() : std::nullopt;
        if (!piece) {
            isAnswering_ = false; // there is no telling what comes next
            co_return std::nullopt;
        }
        if (piece->bytes.empty())
            co_return whole;
        whole.type = piece->type;
        whole.format = piece->format;
        whole.bytes.insert(whole.bytes.end(), piece->bytes.begin(), piece->bytes.end());
    }
}

// Taking it tells the owner to go on: what is new then is the next value.
std::optional<XProperty> SelectionReader::takeValue()
{
    isValueNew_ = false;
    auto value = connection_.takeProperty(window_, valueProperty_, bytesLeft_);
    if (value)
        bytesLeft_ -= value->bytes.size();
    return value;
}

Awaitable<bool> SelectionReader::untilTrue(const bool& condition, std::chrono::milliseconds limit)
{
    while (!condition) {
        const auto time = std::min<Clock::Duration>(limit, end_ - clock_.now());
        if (time <= Clock::Duration::zero() || !co_await progress_.wait(time))
            co_return condition;
    }
    co_return true;
}

void SelectionReader::handle(const xcb_generic_event_t& event)
{
    if (kind(event) == XCB_SELECTION_NOTIFY) {
        const auto& answer = as<xcb_selection_notify_event_t>(event);
        if (answer.requestor != window_)
            return;
        isNotified_ = true;
        isRefused_ = answer.property == XCB_ATOM_NONE;
        progress_.give();
    } else if (kind(event) == XCB_PROPERTY_NOTIFY) {
        const auto& change = as<xcb_property_notify_event_t>(event);
        if (change.window != window_ || change.atom != valueProperty_ || change.state != XCB_PROPERTY_NEW_VALUE)
            return;
        isValueNew_ = true;
        progress_.give();
    }
}

} // namespace DesktopLinux
