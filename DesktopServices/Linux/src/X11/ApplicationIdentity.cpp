// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "X11/ApplicationIdentity.h"

#include <unistd.h>
#include <xcb/res.h>

#include <algorithm>
#include <array>
#include <utility>

namespace DesktopLinux {

namespace {

std::string lowercased(std::string text)
{
    std::ranges::transform(text, text.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; });
    return text;
}

// The two names in WM_CLASS.
struct WindowClass {
    std::string instance;
    std::string name;
};

WindowClass windowClass(XConnection& connection, xcb_window_t window)
{
    auto property = connection.property(window, XCB_ATOM_WM_CLASS);
    if (!property)
        return {};
    WindowClass names { .instance = property->text(), .name = {} };
    const auto end = std::ranges::find(property->bytes, std::byte { 0 });
    property->bytes.erase(property->bytes.begin(), end == property->bytes.end() ? end : end + 1);
    names.name = property->text();
    return names;
}

std::optional<std::uint32_t> processByServer(XConnection& connection, xcb_window_t window)
{
    const xcb_res_client_id_spec_t wanted { window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID };
    const auto answer
        = connection.reply<xcb_res_query_client_ids_reply_t>(xcb_res_query_client_ids(connection.get(), 1, &wanted));
    if (!answer)
        return std::nullopt;
    for (auto id = xcb_res_query_client_ids_ids_iterator(answer.get()); id.rem > 0; xcb_res_client_id_value_next(&id))
        if (xcb_res_client_id_value_value_length(id.data) > 0)
            return *xcb_res_client_id_value_value(id.data);
    return std::nullopt;
}

// Only of programs on this computer: the number means nothing elsewhere.
std::optional<std::uint32_t> processByWindow(XConnection& connection, xcb_window_t window)
{
    std::array<char, 256> host {};
    ::gethostname(host.data(), host.size() - 1);
    const auto machine = connection.property(window, XCB_ATOM_WM_CLIENT_MACHINE);
    const auto process = connection.property(window, connection.atom("_NET_WM_PID"));
    if (!process || process->numbers().empty() || (machine && machine->text() != host.data()))
        return std::nullopt;
    return process->numbers().front();
}

// The identifier in a property that names a desktop file, perhaps with its folder and ending.
std::string namedIdentifier(XConnection& connection, xcb_window_t window, std::string_view property)
{
    const auto value = connection.property(window, connection.atom(property));
    const std::filesystem::path file = value ? value->text() : "";
    return file.extension() == ".desktop" ? file.stem().string() : file.filename().string();
}

// Of the desktop file that the program was started from, unless a program started by that one inherited it.
std::string launchedIdentifier(const ProcessRun& process)
{
    if (startVariable(process, "GIO_LAUNCHED_DESKTOP_FILE_PID") != std::to_string(process.identifier))
        return {};
    const std::filesystem::path file = startVariable(process, "GIO_LAUNCHED_DESKTOP_FILE").value_or("");
    return file.stem().string();
}

const DesktopEntry* findEntry(XConnection& connection, DesktopEntries& entries, xcb_window_t window,
    const WindowClass& names, const ProcessRun& process)
{
    for (const auto* property : { "_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE" })
        if (const auto* entry = entries.withIdentifier(namedIdentifier(connection, window, property)))
            return entry;
    for (const auto& name : { names.name, names.instance }) {
        if (const auto* entry = entries.withWindowClass(name))
            return entry;
        for (const auto& identifier : { name, lowercased(name) })
            if (const auto* entry = entries.withIdentifier(identifier))
                return entry;
    }
    if (const auto* entry = entries.withIdentifier(launchedIdentifier(process)))
        return entry;
    return entries.withProgram(executableOf(process).filename().string());
}

// The terminals from before there was a clipboard, by the class of their windows.
constexpr std::array<std::string_view, 4> selectionTerminals { "xterm", "uxterm", "urxvt", "rxvt" };

// Other terminals that are often used without a desktop file.
constexpr std::array<std::string_view, 5> terminals { "alacritty", "kitty", "st-256color", "foot", "ghostty" };

PasteHabit pasteHabit(const DesktopEntry* entry, const std::string& windowClass)
{
    const auto isIn
        = [&](const auto& table) { return std::ranges::find(table, lowercased(windowClass)) != table.end(); };
    if (isIn(selectionTerminals))
        return PasteHabit::selectionOnly;
    return (entry && entry->isTerminal) || isIn(terminals) ? PasteHabit::terminal : PasteHabit::ordinary;
}

} // namespace

std::optional<ProcessRun> processOfWindow(XConnection& connection, xcb_window_t window)
{
    // The server knows the programs of its windows' numbers, whether there is such a window or not.
    if (!connection.reply<xcb_get_geometry_reply_t>(xcb_get_geometry(connection.get(), window)))
        return std::nullopt;
    auto process = processByServer(connection, window);
    if (!process)
        process = processByWindow(connection, window);
    return process ? runningProcess(static_cast<DesktopServices::ProcessIdentifier>(*process)) : std::nullopt;
}

ApplicationIdentity identify(
    XConnection& connection, DesktopEntries& entries, xcb_window_t window, const ProcessRun& process)
{
    if (process.identifier == ::getpid())
        return { "Sorvane", std::string(ownIdentifier), PasteHabit::ordinary };
    const auto names = windowClass(connection, window);
    const auto* entry = findEntry(connection, entries, window, names, process);
    const auto habit = pasteHabit(entry, names.name);
    if (entry)
        return { entry->name, entry->identifier, habit };
    const auto name = names.name.empty() ? executableOf(process).filename().string() : names.name;
    if (name.empty())
        return {};
    return { name, lowercased(name), habit };
}

} // namespace DesktopLinux
