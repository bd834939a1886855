// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Pieces.h"

#include <ModelStore/Paths.h>

#include <algorithm>

namespace ModelStore {

std::string join(std::initializer_list<std::string_view> parts)
{
    std::string path;
    for (const std::string_view part : parts) {
        if (part.empty())
            continue;
        if (!path.empty() && !path.ends_with('/'))
            path += '/';
        path += part;
    }
    return path;
}

bool isSafeRelativePath(std::string_view path)
{
    if (path.ends_with('/'))
        path.remove_suffix(1);
    if (path.find_first_of("\t\n\r") != std::string_view::npos)
        return false;
    return std::ranges::none_of(
        piecesOf(path, '/'), [](std::string_view piece) { return piece.empty() || piece == "." || piece == ".."; });
}

} // namespace ModelStore
