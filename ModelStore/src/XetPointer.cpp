// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Digest.h"
#include "Pieces.h"

#include <ModelStore/XetPointer.h>

#include <algorithm>
#include <span>
#include <vector>

namespace ModelStore {

namespace {

// The sections of a Link header: cut at the commas that stand outside of angle brackets.
std::vector<std::string_view> sectionsOf(std::string_view link)
{
    std::vector<std::string_view> sections;
    bool isInside = false;
    size_t begin = 0;
    for (size_t i = 0; i < link.size(); ++i) {
        if (link[i] == '<')
            isInside = true;
        else if (link[i] == '>')
            isInside = false;
        else if (link[i] == ',' && !isInside) {
            sections.push_back(link.substr(begin, i - begin));
            begin = i + 1;
        }
    }
    sections.push_back(link.substr(begin));
    return sections;
}

// In lower case, without blanks and quotes.
std::string plain(std::string_view parameters)
{
    std::string text;
    for (const char c : parameters)
        if (c != ' ' && c != '"')
            text += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return text;
}

std::optional<std::string> authorisationURL(std::string_view link)
{
    for (const std::string_view section : sectionsOf(link)) {
        const size_t open = section.find('<');
        const size_t close = section.find('>', open == std::string_view::npos ? open : open + 1);
        if (close == std::string_view::npos)
            continue;
        const std::string_view url = section.substr(open + 1, close - open - 1);
        if (plain(section.substr(close + 1)).find("rel=xet-auth") != std::string::npos && url.starts_with("https://"))
            return std::string(url);
    }
    return {};
}

std::string joined(std::span<const std::string_view> pieces)
{
    std::string text;
    for (size_t i = 0; i < pieces.size(); ++i)
        text += (i == 0 ? "" : "/") + std::string(pieces[i]);
    return text;
}

std::optional<std::string> readTokenURL(std::string_view resolveURL)
{
    // The origin is the first three pieces, owner and name the two before "resolve": it cannot come earlier.
    constexpr size_t firstPlace = 5;
    const std::vector<std::string_view> pieces = piecesOf(resolveURL, '/');
    const auto resolve = std::find(
        pieces.begin() + static_cast<ptrdiff_t>(std::min(pieces.size(), firstPlace)), pieces.end(), "resolve");
    if (resolve == pieces.end() || resolve + 1 == pieces.end() || (resolve + 1)->empty())
        return {};
    const std::string base = joined({ pieces.begin(), resolve - 2 });
    const std::string repository = joined({ resolve - 2, resolve });
    if (base.empty() || repository.empty())
        return {};
    return base + "/api/models/" + repository + "/xet-read-token/" + std::string(*(resolve + 1));
}

} // namespace

std::optional<XetPointer> XetPointer::from(
    const std::optional<std::string>& xetHash, const std::optional<std::string>& link, std::string_view resolveURL)
{
    if (!xetHash || !isDigest(*xetHash))
        return {};
    std::optional<std::string> url = link ? authorisationURL(*link) : std::nullopt;
    if (!url)
        url = readTokenURL(resolveURL);
    return url ? std::optional(XetPointer { .fileID = *xetHash, .refreshURL = *url }) : std::nullopt;
}

} // namespace ModelStore
