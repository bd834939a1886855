// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "X11/SelectionTarget.h"

#include <DesktopServices/Pasteboard.h>

#include <algorithm>
#include <array>
#include <span>

namespace DesktopLinux {

namespace {

constexpr std::string_view utf8 = "UTF8_STRING";
constexpr std::string_view as = " as ";

constexpr std::array<std::string_view, 8> noContents { "TARGETS", "MULTIPLE", "TIMESTAMP", "SAVE_TARGETS", "DELETE",
    "INSERT_SELECTION", "INSERT_PROPERTY", "GTK_TEXT_BUFFER_CONTENTS" };

SharedBytes bytesOf(std::string_view text)
{
    const auto bytes = std::as_bytes(std::span(text));
    return std::make_shared<std::vector<std::byte>>(bytes.begin(), bytes.end());
}

std::string replaced(std::string text, std::string_view old, std::string_view by)
{
    for (auto place = text.find(old); place != text.npos; place = text.find(old, place + by.size()))
        text.replace(place, old.size(), by);
    return text;
}

// Programs may use any characters in names. Without spaces none is taken for what stands between two.
std::string escaped(const std::string& name)
{
    return replaced(replaced(name, "%", "%25"), " ", "%20");
}

std::string unescaped(std::string_view text)
{
    return replaced(replaced(std::string(text), "%20", " "), "%25", "%");
}

bool isASCII(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

} // namespace

std::string pasteboardType(const SelectionTarget& target)
{
    if (target.name == utf8 && target.type == utf8 && target.format == 8)
        return std::string(DesktopServices::pasteboardStringType);
    const bool isNamedLikeAnother
        = target.name == DesktopServices::pasteboardStringType || target.name.find(as) != target.name.npos;
    if (target.type == target.name && target.format == 8 && !isNamedLikeAnother)
        return target.name;
    return escaped(target.name) + std::string(as) + escaped(target.type) + "/" + std::to_string(target.format);
}

std::optional<SelectionTarget> targetOfPasteboardType(std::string_view type)
{
    if (type == DesktopServices::pasteboardStringType)
        return SelectionTarget { std::string(utf8), std::string(utf8), 8, nullptr };
    SelectionTarget target { std::string(type), std::string(type), 8, nullptr };
    if (const auto end = type.find(as); end != type.npos) {
        target.name = unescaped(type.substr(0, end));
        target.type = unescaped(type.substr(end + as.size()));
        for (const std::uint8_t format : { 8, 16, 32 }) {
            const auto ending = "/" + std::to_string(format);
            if (target.type.ends_with(ending)) {
                target.type.resize(target.type.size() - ending.size());
                target.format = format;
                break;
            }
        }
    }
    return target.name.empty() || target.type.empty() ? std::nullopt : std::optional(target);
}

bool isNoContent(std::string_view target)
{
    return std::ranges::find(noContents, target) != noContents.end();
}

std::vector<SelectionTarget> targetsOfText(std::string_view text)
{
    const auto bytes = bytesOf(text);
    std::vector<SelectionTarget> targets {
        { std::string(utf8), std::string(utf8), 8, bytes },
        { "text/plain;charset=utf-8", "text/plain;charset=utf-8", 8, bytes },
        { "text/plain", "text/plain", 8, bytes },
        { "TEXT", std::string(utf8), 8, bytes },
    };
    if (isASCII(text)) // it is Latin-1
        targets.push_back({ "STRING", "STRING", 8, bytes });
    return targets;
}

} // namespace DesktopLinux
