// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Programs/DesktopEntries.h"

#include <PlatformSupport/Environment.h>
#include <PlatformSupport/Text.h>
#include <PlatformSupport/UserFolders.h>
#include <PlatformSupport/UTF8.h>
#include <PlatformSupport/WholeFile.h>

#include <algorithm>
#include <system_error>

namespace DesktopLinux {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view ending = ".desktop";
constexpr size_t largestFile = 1 << 20; // bytes; the largest in use have some 100,000
constexpr int deepestFolder = 4;

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t\r");
    return first == text.npos ? "" : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// Calls `use` with the keys and values of the group that describes the program.
template <typename Use> void forEachKey(std::string_view contents, Use use)
{
    bool isInGroup = false;
    while (!contents.empty()) {
        const auto end = std::min(contents.find('\n'), contents.size());
        const auto line = trimmed(contents.substr(0, end));
        contents.remove_prefix(std::min(end + 1, contents.size()));
        const auto equals = line.find('=');
        if (line.starts_with('['))
            isInGroup = line == "[Desktop Entry]";
        else if (isInGroup && equals != line.npos && !line.starts_with('#'))
            use(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
    }
}

std::string unescaped(std::string_view value)
{
    std::string text;
    for (size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        switch (value[++i]) {
        case 's':
        case 'n':
        case 't':
        case 'r':
            text += ' ';
            break;
        default:
            text += value[i];
        }
    }
    return PlatformSupport::repairedUTF8(text);
}

// How well a translation fits the user's language: 0 for not at all, 1 for the untranslated name.
int fitness(std::string_view key, std::string_view locale)
{
    if (key == "Name")
        return 1;
    if (!key.starts_with("Name[") || !key.ends_with(']'))
        return 0;
    const auto translation = key.substr(5, key.size() - 6);
    const auto modifier = locale.substr(std::min(locale.find('@'), locale.size()));
    const auto territory = locale.substr(0, locale.find_first_of(".@"));
    const auto language = territory.substr(0, territory.find('_'));
    const std::string fitting[] { std::string(language), std::string(language).append(modifier), std::string(territory),
        std::string(territory).append(modifier) };
    for (int i = 3; i >= 0; --i)
        if (!language.empty() && translation == fitting[i])
            return i + 2;
    return 0;
}

// The executable of a command line. Example: "env GDK_BACKEND=x11 /usr/bin/foot --server %U" runs "foot".
std::string programOf(std::string_view commandLine)
{
    while (!commandLine.empty()) {
        const bool isQuoted = commandLine.starts_with('"');
        const auto word = commandLine.substr(isQuoted, commandLine.find(isQuoted ? '"' : ' ', 1) - isQuoted);
        if (word != "env" && word.find('=') == word.npos)
            return fs::path(word).filename().string();
        commandLine = trimmed(commandLine.substr(std::min(word.size() + 2 * isQuoted, commandLine.size())));
    }
    return {};
}

std::string languageOfMessages()
{
    for (const auto* variable : { "LC_ALL", "LC_MESSAGES", "LANG" })
        if (auto value = PlatformSupport::environmentVariable(variable); value && !value->empty())
            return *value;
    return {};
}

// The folders that a colon-separated variable names, as far as they are absolute.
std::vector<fs::path> dataFolders()
{
    auto variable = PlatformSupport::environmentVariable("XDG_DATA_DIRS").value_or("");
    if (variable.empty())
        variable = "/usr/local/share:/usr/share";
    std::string_view rest = variable;
    std::vector<fs::path> folders { PlatformSupport::UserFolders::fromEnvironment().applicationSupport };
    while (!rest.empty()) {
        const auto end = std::min(rest.find(':'), rest.size());
        if (const fs::path folder = rest.substr(0, end); folder.is_absolute())
            folders.push_back(folder);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return folders;
}

// A file in a folder of its own has the folder's name before its own: "kde/konsole.desktop" is "kde-konsole".
std::string identifierOf(const fs::path& file, const fs::path& folder)
{
    auto identifier = file.lexically_relative(folder).string();
    identifier.resize(identifier.size() - ending.size());
    std::ranges::replace(identifier, '/', '-');
    return identifier;
}

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(
    std::string_view identifier, std::string_view contents, std::string_view locale)
{
    DesktopEntry entry;
    entry.identifier = identifier;
    bool isProgram = false;
    bool isHidden = false;
    int best = 0;
    forEachKey(contents, [&](std::string_view key, std::string_view value) {
        if (const int fits = fitness(key, locale); fits > best) {
            best = fits;
            entry.name = unescaped(value);
        }
        isProgram = isProgram || (key == "Type" && value == "Application");
        isHidden = isHidden || (key == "Hidden" && value == "true");
        if (key == "StartupWMClass")
            entry.windowClass = unescaped(value);
        if (key == "Categories")
            entry.isTerminal = value.find("TerminalEmulator") != value.npos;
        if (key == "Exec")
            entry.program = programOf(value);
    });
    return isProgram && !isHidden && best > 0 ? std::optional(entry) : std::nullopt;
}

DesktopEntries::DesktopEntries(std::vector<fs::path> folders, std::string locale)
    : folders_(std::move(folders))
    , locale_(std::move(locale))
{
}

DesktopEntries DesktopEntries::fromEnvironment()
{
    auto folders = dataFolders();
    for (auto& folder : folders)
        folder /= "applications";
    return { std::move(folders), languageOfMessages() };
}

const DesktopEntry* DesktopEntries::withIdentifier(std::string_view identifier)
{
    refresh();
    const auto found = entries_.find(identifier);
    return found == entries_.end() ? nullptr : &found->second;
}

const DesktopEntry* DesktopEntries::withWindowClass(std::string_view windowClass)
{
    refresh();
    const auto found = std::ranges::find_if(entries_,
        [&](const auto& entry) { return PlatformSupport::asciiCaseEqual(entry.second.windowClass, windowClass); });
    return windowClass.empty() || found == entries_.end() ? nullptr : &found->second;
}

const DesktopEntry* DesktopEntries::withProgram(std::string_view program)
{
    refresh();
    const DesktopEntry* only = nullptr;
    for (const auto& [identifier, entry] : entries_) {
        if (program.empty() || entry.program != program)
            continue;
        if (only)
            return nullptr;
        only = &entry;
    }
    return only;
}

void DesktopEntries::refresh()
{
    Times times;
    for (const auto& folder : folders_) {
        std::error_code missing;
        const auto time = fs::last_write_time(folder, missing);
        times.push_back(missing ? std::nullopt : std::optional(time));
    }
    if (times == times_)
        return;
    times_ = std::move(times);
    entries_.clear();
    for (const auto& folder : folders_)
        readFolder(folder);
}

void DesktopEntries::readFolder(const fs::path& folder)
{
    std::error_code failure;
    for (fs::recursive_directory_iterator file(folder, fs::directory_options::skip_permission_denied, failure), end;
         !failure && file != end; file.increment(failure)) {
        if (file.depth() >= deepestFolder)
            file.disable_recursion_pending();
        if (file->path().extension() != ending)
            continue;
        try {
            auto identifier = identifierOf(file->path(), folder);
            if (auto entry
                = parseDesktopEntry(identifier, PlatformSupport::readFile(file->path(), largestFile), locale_))
                entries_.try_emplace(std::move(identifier), std::move(*entry));
        } catch (const fs::filesystem_error&) {
            // One damaged file hides one program's name.
        }
    }
}

} // namespace DesktopLinux
