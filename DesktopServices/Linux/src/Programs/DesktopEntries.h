// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace DesktopLinux {

// What a desktop file says of a program.
struct DesktopEntry {
    std::string identifier; // the file's name without its ending, such as "org.mozilla.firefox"
    std::string name; // in the user's language
    std::string windowClass; // of its windows, if the file names one
    bool isTerminal = false; // by its categories
    std::string program; // what it runs: the name of the executable, without its folder
};

// Reads one desktop file; nothing if it describes no program, or is hidden.
//
// `locale` is as in $LANG: "de_AT.UTF-8@euro". Example: "Name[de]" goes before "Name" there.
std::optional<DesktopEntry> parseDesktopEntry(
    std::string_view identifier, std::string_view contents, std::string_view locale);

// The programs that are installed, by their desktop files.
//
// The folders are read again when one of them has changed. Files that cannot be read count as missing.
class DesktopEntries {
public:
    // Of two files with the same identifier, that of the earlier folder counts.
    DesktopEntries(std::vector<std::filesystem::path> folders, std::string locale);

    // Those of the user and of the system, in the user's language.
    static DesktopEntries fromEnvironment();

    // Each gives null if there is none; valid until the next call.
    const DesktopEntry* withIdentifier(std::string_view identifier);
    const DesktopEntry* withWindowClass(std::string_view windowClass);
    const DesktopEntry* withProgram(std::string_view program); // none if several run it

private:
    using Times = std::vector<std::optional<std::filesystem::file_time_type>>;

    void refresh();
    void readFolder(const std::filesystem::path& folder);

    std::vector<std::filesystem::path> folders_;
    std::string locale_;
    std::optional<Times> times_; // of the folders, when they were read
    std::map<std::string, DesktopEntry, std::less<>> entries_; // by identifier
};

} // namespace DesktopLinux
