// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "X11/X11Pasteboard.h"

#include <xcb/xfixes.h>

#include <algorithm>
#include <span>
#include <utility>

namespace DesktopLinux {

using DesktopServices::PasteboardItem;
using DesktopServices::PasteboardRepresentation;
using PlatformSupport::Awaitable;

namespace {

// More than any program offers.
constexpr size_t mostTargets = 500;

// A program that copies without end is not waited for.
constexpr int mostReadings = 3;

// From now on every change of the selection's owner is told. The kind of those events.
std::uint8_t watchOwner(XConnection& connection, xcb_atom_t selection)
{
    connection.reply<xcb_xfixes_query_version_reply_t>(
        xcb_xfixes_query_version(connection.get(), XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION));
    xcb_xfixes_select_selection_input(connection.get(), connection.root(), selection,
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_xfixes_id);
    return extension ? extension->first_event + XCB_XFIXES_SELECTION_NOTIFY : 0;
}

bool hasType(const std::vector<SelectionTarget>& targets, const std::string& name)
{
    return std::ranges::any_of(targets, [&](const SelectionTarget& target) { return target.name == name; });
}

} // namespace

X11Pasteboard::X11Pasteboard(
    XConnection& connection, PlatformSupport::Executor mainThread, PlatformSupport::Clock& clock)
    : connection_(connection)
    , mainThread_(std::move(mainThread))
    , clock_(clock)
    , selection_(connection.atom("CLIPBOARD"))
    , changeEvent_(watchOwner(connection, selection_))
    , clipboard_(connection, clock, selection_)
    , primary_(connection, clock, XCB_ATOM_PRIMARY)
    , events_(connection.observe([this](const xcb_generic_event_t& event) {
        if (isChange(event))
            ++changes_;
    }))
{
}

bool X11Pasteboard::isChange(const xcb_generic_event_t& event) const
{
    return changeEvent_ != 0 && kind(event) == changeEvent_
        && as<xcb_xfixes_selection_notify_event_t>(event).selection == selection_;
}

std::int64_t X11Pasteboard::changeCount() const
{
    connection_.synchronise();
    auto count = changes_;
    connection_.visitWaiting([&](const xcb_generic_event_t& event) { count += isChange(event) ? 1 : 0; });
    return count;
}

// What is copied while it is read would mix with what was there.
Awaitable<std::vector<PasteboardItem>> X11Pasteboard::items()
{
    auto before = changeCount();
    auto representations = co_await readOnce();
    for (int readings = 1; readings < mostReadings && changeCount() != before; ++readings) {
        before = changeCount();
        representations = co_await readOnce();
    }
    std::vector<PasteboardItem> items;
    if (!representations.empty())
        items.push_back({ std::move(representations) });
    co_return items;
}

Awaitable<X11Pasteboard::Representations> X11Pasteboard::readOnce()
{
    Representations representations;
    if (clipboard_.isOwner()) {
        for (const auto& target : clipboard_.offered())
            representations.push_back({ pasteboardType(target), *target.bytes });
        co_return representations;
    }
    SelectionReader reader(connection_, mainThread_, clock_, selection_);
    auto atoms = co_await reader.targets();
    atoms.resize(std::min(atoms.size(), mostTargets));
    for (const auto atom : atoms) {
        SelectionTarget target { .name = connection_.atomName(atom), .type = {}, .format = 8, .bytes = {} };
        if (target.name.empty() || isNoContent(target.name) || !reader.isAnswering())
            continue;
        const auto value = co_await reader.read(atom);
        if (!value)
            continue;
        target.type = connection_.atomName(value->type);
        target.format = value->format;
        representations.push_back({ pasteboardType(target), value->bytes });
    }
    co_return representations;
}

void X11Pasteboard::clearContents()
{
    primary_.release();
    clipboard_.own();
}

bool X11Pasteboard::setString(std::string_view text, std::string_view type)
{
    if (type == DesktopServices::pasteboardStringType)
        return clipboard_.offer(targetsOfText(text));
    const auto bytes = std::as_bytes(std::span(text));
    const PasteboardRepresentation representation { std::string(type), { bytes.begin(), bytes.end() } };
    return writeItems({ PasteboardItem { { representation } } });
}

bool X11Pasteboard::writeItems(const std::vector<PasteboardItem>& items)
{
    std::vector<SelectionTarget> targets;
    for (const auto& item : items) {
        for (const auto& [type, data] : item.representations) {
            auto target = targetOfPasteboardType(type);
            if (!target || hasType(targets, target->name))
                continue;
            target->bytes = std::make_shared<std::vector<std::byte>>(data);
            targets.push_back(std::move(*target));
        }
    }
    return clipboard_.offer(std::move(targets));
}

// Who only asks which forms there are takes nothing: many do, whenever something is copied.
bool X11Pasteboard::wasTakenBy(DesktopServices::ProcessIdentifier process) const
{
    return clipboard_.wasTakenBy(process) || primary_.wasTakenBy(process);
}

void X11Pasteboard::lendToPrimarySelection()
{
    if (clipboard_.isOwner() && primary_.own())
        primary_.offer(clipboard_.offered());
}

} // namespace DesktopLinux
