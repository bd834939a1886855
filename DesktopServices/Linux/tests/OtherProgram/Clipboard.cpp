// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Clipboard.h"

#include <algorithm>
#include <csignal>
#include <utility>

namespace {

constexpr size_t pieceSize = 64 * 1024;

xcb_window_t makeWindow(const Display& display)
{
    const auto window = xcb_generate_id(display.connection);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(display.connection, XCB_COPY_FROM_PARENT, window, display.root, -1, -1, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    return window;
}

bool isNewValue(const xcb_generic_event_t& event, xcb_window_t window)
{
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    return (event.response_type & 0x7f) == XCB_PROPERTY_NOTIFY && change.window == window
        && change.state == XCB_PROPERTY_NEW_VALUE;
}

// Bytes that differ from place to place.
std::string pattern(size_t size)
{
    std::string bytes(size, '\0');
    for (size_t i = 0; i < size; ++i)
        bytes[i] = char((i * 31 + i / 251) % 256);
    return bytes;
}

unsigned checksum(const std::string& bytes)
{
    unsigned sum = 0;
    for (const char byte : bytes)
        sum = sum * 31 + static_cast<unsigned char>(byte);
    return sum;
}

} // namespace

Clipboard::Clipboard(Display& display)
    : display_(display)
    , window_(makeWindow(display))
{
    display_.handler = [this](const xcb_generic_event_t& event) { handle(event); };
}

std::string Clipboard::run(const std::string& command, std::istringstream& arguments)
{
    if (command == "offer" || command == "offer-text")
        return offer(arguments, command == "offer-text");
    if (command == "copy")
        return copy();
    if (command == "ignore-after") {
        arguments >> answersLeft_.emplace();
        return "ignoring";
    }
    if (command == "stop-after") {
        arguments >> answersBeforeStop_.emplace();
        return "stopping";
    }
    if (command == "await-ignored") {
        while (!answersLeft_ || *answersLeft_ >= 0)
            display_.waitFor([this](const xcb_generic_event_t& event) {
                display_.handle(event);
                return true;
            });
        return "ignored";
    }
    if (command == "endless")
        return isEndless_ = true, "endless";
    if (command == "vanish") {
        xcb_destroy_window(display_.connection, window_);
        display_.synchronise();
        return "gone";
    }
    if (command == "request") {
        std::string target;
        arguments >> target;
        xcb_convert_selection(display_.connection, window_, display_.atom("CLIPBOARD"), display_.atom(target),
            display_.atom("PASTED"), XCB_CURRENT_TIME);
        display_.waitFor([&](const auto& event) { return isNewValue(event, window_); });
        return "requested";
    }
    const bool isPrimary = command == "paste-primary";
    const auto content = paste(arguments, isPrimary ? xcb_atom_t { XCB_ATOM_PRIMARY } : display_.atom("CLIPBOARD"));
    if (!content)
        return "refused";
    if (command != "paste")
        return content->bytes;
    return display_.atomName(content->type) + " " + std::to_string(content->format) + " "
        + std::to_string(content->bytes.size()) + " " + std::to_string(checksum(content->bytes));
}

std::string Clipboard::offer(std::istringstream& arguments, bool isText)
{
    std::string target;
    std::string type = "UTF8_STRING";
    int format = 8;
    size_t size = 0;
    std::string text;
    arguments >> target;
    if (isText)
        arguments >> text;
    else
        arguments >> type >> format >> size;
    std::ranges::replace(target, '~', ' ');
    std::ranges::replace(type, '~', ' ');
    next_[display_.atom(target)] = { display_.atom(type), std::uint8_t(format), isText ? text : pattern(size) };
    return std::to_string(checksum(isText ? text : pattern(size)));
}

std::string Clipboard::copy()
{
    copied_ = std::exchange(next_, {});
    xcb_set_selection_owner(display_.connection, window_, display_.atom("CLIPBOARD"), XCB_CURRENT_TIME);
    display_.synchronise();
    return "copied";
}

std::optional<Clipboard::Content> Clipboard::paste(std::istringstream& arguments, xcb_atom_t selection)
{
    std::string target;
    arguments >> target;
    std::ranges::replace(target, '~', ' ');
    xcb_convert_selection(
        display_.connection, window_, selection, display_.atom(target), display_.atom("PASTED"), XCB_CURRENT_TIME);
    bool isRefused = false;
    display_.waitFor([&](const xcb_generic_event_t& event) {
        isRefused = reinterpret_cast<const xcb_selection_notify_event_t&>(event).property == XCB_ATOM_NONE;
        return (event.response_type & 0x7f) == XCB_SELECTION_NOTIFY;
    });
    if (isRefused)
        return std::nullopt;
    Content whole = take();
    if (whole.type != display_.atom("INCR"))
        return whole;
    whole.bytes.clear();
    while (true) {
        display_.waitFor([&](const auto& event) { return isNewValue(event, window_); });
        const Content piece = take();
        if (piece.bytes.empty())
            return whole;
        whole.type = piece.type;
        whole.format = piece.format;
        whole.bytes += piece.bytes;
    }
}

Clipboard::Content Clipboard::take()
{
    const std::unique_ptr<xcb_get_property_reply_t, Display::Free> reply(xcb_get_property_reply(display_.connection,
        xcb_get_property(display_.connection, true, window_, display_.atom("PASTED"), XCB_ATOM_ANY, 0, UINT32_MAX / 4),
        nullptr));
    return { reply->type, reply->format,
        { static_cast<const char*>(xcb_get_property_value(reply.get())),
            size_t(xcb_get_property_value_length(reply.get())) } };
}

void Clipboard::handle(const xcb_generic_event_t& event)
{
    const auto kind = event.response_type & 0x7f;
    if (kind == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.state == XCB_PROPERTY_DELETE)
            sendPiece(change.window, change.atom);
    }
    if (kind != XCB_SELECTION_REQUEST || (answersLeft_ && --*answersLeft_ < 0))
        return;
    stopIfToldTo();
    const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(event);
    xcb_selection_notify_event_t notice {};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    notice.property = answer(request) ? request.property : xcb_atom_t { XCB_ATOM_NONE };
    xcb_send_event(display_.connection, false, request.requestor, 0, reinterpret_cast<const char*>(&notice));
}

void Clipboard::stopIfToldTo()
{
    if (answersBeforeStop_ && --*answersBeforeStop_ < 0) {
        answersBeforeStop_.reset();
        std::raise(SIGSTOP);
    }
}

bool Clipboard::answer(const xcb_selection_request_event_t& request)
{
    if (request.target == display_.atom("TARGETS")) {
        std::vector<xcb_atom_t> targets { request.target, display_.atom("MULTIPLE"), display_.atom("DELETE") };
        for (const auto& [target, content] : copied_)
            targets.push_back(target);
        set(request.requestor, request.property, XCB_ATOM_ATOM, 32,
            { reinterpret_cast<const char*>(targets.data()), targets.size() * 4 });
        return true;
    }
    const auto found = copied_.find(request.target);
    if (found == copied_.end() || found->second.type == display_.atom("NOTHING"))
        return false;
    const auto& content = found->second;
    if (content.bytes.size() <= pieceSize) {
        set(request.requestor, request.property, content.type, content.format, content.bytes);
        return true;
    }
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(display_.connection, request.requestor, XCB_CW_EVENT_MASK, &events);
    transfers_.push_back({ request.requestor, request.property, content });
    set(request.requestor, request.property, display_.atom("INCR"), 32, std::string(4, '\1'));
    return true;
}

void Clipboard::sendPiece(xcb_window_t window, xcb_atom_t property)
{
    const auto transfer = std::find_if(transfers_.begin(), transfers_.end(),
        [&](const Transfer& candidate) { return candidate.window == window && candidate.property == property; });
    if (transfer == transfers_.end())
        return;
    auto& content = transfer->content;
    const auto piece = content.bytes.substr(0, pieceSize);
    set(window, property, content.type, content.format, piece);
    if (!isEndless_)
        content.bytes.erase(0, piece.size());
    if (piece.empty())
        transfers_.erase(transfer);
}

void Clipboard::set(
    xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format, const std::string& bytes)
{
    xcb_change_property(display_.connection, XCB_PROP_MODE_REPLACE, window, property, type, format,
        std::uint32_t(bytes.size() / (format / 8)), bytes.data());
}
