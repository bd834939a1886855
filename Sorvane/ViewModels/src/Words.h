// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <QString>

#include <string_view>

namespace Sorvane {

// Words of the logic, which are UTF-8, for the screen.
inline QString words(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace Sorvane
