// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Pieces.h"

#include <ModelStore/Manifest.h>
#include <PlatformSupport/UTF8.h>

#include <charconv>

namespace ModelStore {

namespace {

constexpr std::string_view magic = "TRW1";

// A decimal number with an optional sign, as a whole.
std::optional<int64_t> integer(std::string_view text)
{
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return {};
    return value;
}

bool readLine(std::string_view line, Manifest& manifest)
{
    const std::vector<std::string_view> fields = piecesOf(line, '\t');
    if (fields.front() == "R" && fields.size() == 2) {
        manifest.requested.emplace_back(fields[1]);
        return true;
    }
    if (fields.front() == "F" && fields.size() == 4) {
        const std::optional<int64_t> size = integer(fields[2]);
        if (size)
            manifest.entries.push_back(
                { .path = std::string(fields[1]), .size = *size, .sha256 = std::string(fields[3]) });
        return size.has_value();
    }
    return false;
}

} // namespace

Bytes Manifest::serialized() const
{
    std::string text(magic);
    for (const std::string& path : requested)
        text += "\nR\t" + path;
    for (const Entry& entry : entries)
        text += "\nF\t" + entry.path + "\t" + std::to_string(entry.size) + "\t" + entry.sha256;
    return { text.begin(), text.end() };
}

std::optional<Manifest> Manifest::parse(const Bytes& bytes)
{
    const std::string text
        = PlatformSupport::repairedUTF8({ reinterpret_cast<const char*>(bytes.data()), bytes.size() });
    const std::vector<std::string_view> lines = piecesOf(text, '\n');
    if (lines.front() != magic)
        return {};
    Manifest manifest;
    for (size_t i = 1; i < lines.size(); ++i)
        if (!lines[i].empty() && !readLine(lines[i], manifest))
            return {};
    return manifest;
}

} // namespace ModelStore
