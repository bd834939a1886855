// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "NumberedLines.h"

namespace Sorvane {

std::string numberedLines(std::span<const std::string> items)
{
    std::string lines;
    int number = 0;
    for (const auto& item : items) {
        if (number > 0)
            lines += '\n';
        lines += std::to_string(++number) + ". " + item;
    }
    return lines;
}

} // namespace Sorvane
