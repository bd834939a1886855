// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>

namespace DesktopServices {

using ProcessIdentifier = std::int32_t;

} // namespace DesktopServices
