// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopLinux/JournalLog.h>

#include <sys/socket.h>
#include <sys/un.h>

#include <cstdint>
#include <cstring>
#include <iostream>
#include <string>
#include <utility>

namespace DesktopLinux {

namespace {

constexpr std::string_view priorityOfErrors = "3"; // as the system log counts

// The journal's protocol: a name, a line feed, the length in eight bytes with the lowest first, the value, a line feed.
void append(std::string& message, std::string_view name, std::string_view value)
{
    message.append(name).append("\n");
    for (unsigned shift = 0; shift < 64; shift += 8)
        message += static_cast<char>((std::uint64_t { value.size() } >> shift) & 0xff);
    message.append(value).append("\n");
}

} // namespace

JournalLog::JournalLog(std::filesystem::path socket)
    : socket_(std::move(socket))
    , descriptor_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
{
}

void JournalLog::error(const DesktopServices::LogCategory& category, std::string_view entry)
{
    std::string message;
    append(message, "MESSAGE", entry);
    append(message, "PRIORITY", priorityOfErrors);
    append(message, "SYSLOG_IDENTIFIER", "sorvane");
    append(message, "SORVANE_SUBSYSTEM", category.subsystem);
    append(message, "SORVANE_CATEGORY", category.category);
    if (!sendToJournal(message))
        std::cerr << category.subsystem << " " << category.category << ": " << entry << std::endl;
}

bool JournalLog::sendToJournal(std::string_view message) const
{
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    const auto path = socket_.string();
    if (!descriptor_.isOpen() || path.size() >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, path.data(), path.size());
    const auto sent = ::sendto(descriptor_.number(), message.data(), message.size(), MSG_NOSIGNAL,
        reinterpret_cast<const sockaddr*>(&address), sizeof address);
    return sent == static_cast<ssize_t>(message.size());
}

} // namespace DesktopLinux
