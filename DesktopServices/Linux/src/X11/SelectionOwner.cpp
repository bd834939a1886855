// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "X11/SelectionOwner.h"

#include "X11/ApplicationIdentity.h"

#include <algorithm>
#include <span>
#include <utility>

namespace DesktopLinux {

namespace {

// What goes in one piece; a multiple of every element's size, and below what any server takes in one request.
constexpr size_t pieceSize = 128 * 1024;

// A program that takes no piece for so long will not take any.
constexpr std::chrono::seconds longestPause { 30 };

// More than any program asks for at once.
constexpr size_t largestMultiple = 4096; // bytes

std::span<const std::byte> bytesOf(const std::vector<xcb_atom_t>& atoms)
{
    return std::as_bytes(std::span(atoms));
}

} // namespace

SelectionOwner::SelectionOwner(XConnection& connection, PlatformSupport::Clock& clock, xcb_atom_t selection)
    : connection_(connection)
    , clock_(clock)
    , selection_(selection)
    , window_(connection.makeWindow(XCB_EVENT_MASK_PROPERTY_CHANGE))
    , events_(connection.observeUrgent([this](const xcb_generic_event_t& event) { handle(event); }))
{
}

SelectionOwner::~SelectionOwner()
{
    xcb_destroy_window(connection_.get(), window_);
    connection_.flush();
}

bool SelectionOwner::own()
{
    targets_.clear();
    takers_.clear();
    since_ = serverTime();
    xcb_set_selection_owner(connection_.get(), window_, selection_, since_);
    return isOwner();
}

void SelectionOwner::release()
{
    targets_.clear();
    takers_.clear();
    if (isOwner())
        xcb_set_selection_owner(connection_.get(), XCB_WINDOW_NONE, selection_, since_);
    connection_.flush();
}

bool SelectionOwner::isOwner()
{
    const auto answer
        = connection_.reply<xcb_get_selection_owner_reply_t>(xcb_get_selection_owner(connection_.get(), selection_));
    return answer && answer->owner == window_;
}

bool SelectionOwner::offer(std::vector<SelectionTarget> targets)
{
    if (!isOwner())
        return false;
    targets_ = std::move(targets);
    return true;
}

// A change of a property tells it.
xcb_timestamp_t SelectionOwner::serverTime()
{
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    xcb_change_property(connection_.get(), XCB_PROP_MODE_APPEND, window_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, "");
    connection_.synchronise();
    connection_.visitWaiting([&](const xcb_generic_event_t& event) {
        if (kind(event) == XCB_PROPERTY_NOTIFY && as<xcb_property_notify_event_t>(event).window == window_)
            time = as<xcb_property_notify_event_t>(event).time;
    });
    return time;
}

void SelectionOwner::handle(const xcb_generic_event_t& event)
{
    if (kind(event) == XCB_SELECTION_REQUEST) {
        const auto& request = as<xcb_selection_request_event_t>(event);
        if (request.owner == window_ && request.selection == selection_)
            handleRequest(request);
    } else if (kind(event) == XCB_PROPERTY_NOTIFY) {
        const auto& change = as<xcb_property_notify_event_t>(event);
        if (change.state == XCB_PROPERTY_DELETE)
            taken(change.window, change.atom);
    } else if (kind(event) == XCB_DESTROY_NOTIFY) {
        forget(as<xcb_destroy_notify_event_t>(event).window);
    } else if (kind(event) == XCB_SELECTION_CLEAR) {
        const auto& clear = as<xcb_selection_clear_event_t>(event);
        if (clear.owner == window_ && clear.selection == selection_ && !isOwner())
            targets_.clear();
    }
}

void SelectionOwner::handleRequest(const xcb_selection_request_event_t& request)
{
    forgetFrozen();
    // Old programs leave it to the owner where the value goes.
    const auto property = request.property == XCB_ATOM_NONE ? request.target : request.property;
    xcb_selection_notify_event_t notice {};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.time = request.time;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    notice.property = answer(request.requestor, request.target, property) ? property : xcb_atom_t { XCB_ATOM_NONE };
    xcb_send_event(connection_.get(), false, request.requestor, 0, reinterpret_cast<const char*>(&notice));
    connection_.flush();
}

bool SelectionOwner::answer(xcb_window_t window, xcb_atom_t target, xcb_atom_t property)
{
    if (target == connection_.atom("TARGETS")) {
        answerTargets(window, property);
        return true;
    }
    if (target == connection_.atom("TIMESTAMP")) {
        setProperty(window, property, XCB_ATOM_INTEGER, 32, std::as_bytes(std::span(&since_, 1)));
        return true;
    }
    if (target == connection_.atom("MULTIPLE"))
        return answerSeveral(window, property);
    const auto found = std::ranges::find_if(
        targets_, [&](const SelectionTarget& offered) { return connection_.atom(offered.name) == target; });
    if (found == targets_.end())
        return false;
    hand(window, property, *found);
    noteTaker(window);
    return true;
}

void SelectionOwner::noteTaker(xcb_window_t window)
{
    if (const auto process = processOfWindow(connection_, window))
        takers_.insert(process->identifier);
}

void SelectionOwner::answerTargets(xcb_window_t window, xcb_atom_t property)
{
    std::vector<xcb_atom_t> names { connection_.atom("TARGETS"), connection_.atom("TIMESTAMP"),
        connection_.atom("MULTIPLE") };
    for (const auto& target : targets_)
        names.push_back(connection_.atom(target.name));
    setProperty(window, property, XCB_ATOM_ATOM, 32, bytesOf(names));
}

// The property lists pairs of a target and the property for it; what is not to be had is marked in it.
bool SelectionOwner::answerSeveral(xcb_window_t window, xcb_atom_t property)
{
    const auto request = connection_.property(window, property, largestMultiple);
    if (!request)
        return false;
    auto pairs = request->numbers();
    for (size_t i = 0; i + 1 < pairs.size(); i += 2)
        if (pairs[i] == connection_.atom("MULTIPLE") || !answer(window, pairs[i], pairs[i + 1]))
            pairs[i + 1] = XCB_ATOM_NONE;
    setProperty(window, property, request->type, 32, bytesOf(pairs));
    return true;
}

void SelectionOwner::hand(xcb_window_t window, xcb_atom_t property, const SelectionTarget& target)
{
    const auto type = connection_.atom(target.type);
    if (target.bytes->size() <= pieceSize) {
        setProperty(window, property, type, target.format, *target.bytes);
        return;
    }
    listenTo(window, true);
    const auto size = static_cast<std::uint32_t>(target.bytes->size());
    setProperty(window, property, connection_.atom("INCR"), 32, std::as_bytes(std::span(&size, 1)));
    transfers_.push_back({ window, property, type, target.format, target.bytes, 0, clock_.now() });
}

void SelectionOwner::taken(xcb_window_t window, xcb_atom_t property)
{
    const auto transfer = std::ranges::find_if(transfers_,
        [&](const Transfer& candidate) { return candidate.window == window && candidate.property == property; });
    if (transfer == transfers_.end())
        return;
    const auto left = std::span(*transfer->bytes).subspan(transfer->sent);
    const auto piece = left.first(std::min(left.size(), pieceSize));
    setProperty(window, property, transfer->type, transfer->format, piece); // an empty one at the end
    transfer->sent += piece.size();
    transfer->latestProgress = clock_.now();
    if (!piece.empty())
        return;
    transfers_.erase(transfer);
    if (std::ranges::none_of(transfers_, [&](const Transfer& other) { return other.window == window; }))
        listenTo(window, false);
}

void SelectionOwner::forget(xcb_window_t window)
{
    std::erase_if(transfers_, [&](const Transfer& transfer) { return transfer.window == window; });
}

void SelectionOwner::forgetFrozen()
{
    std::erase_if(transfers_,
        [now = clock_.now()](const Transfer& transfer) { return now - transfer.latestProgress > longestPause; });
}

// Nobody else here listens to windows of other programs.
void SelectionOwner::listenTo(xcb_window_t window, bool isListening)
{
    const std::uint32_t events = isListening ? XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY : 0u;
    xcb_change_window_attributes(connection_.get(), window, XCB_CW_EVENT_MASK, &events);
}

void SelectionOwner::setProperty(
    xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format, std::span<const std::byte> bytes)
{
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property, type, format,
        static_cast<std::uint32_t>(bytes.size() / (format / 8)), bytes.data());
}

} // namespace DesktopLinux
