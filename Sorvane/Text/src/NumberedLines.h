// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <span>
#include <string>

namespace Sorvane {

// "1. Buy milk", "2. Call mom", and so on, a line each, without a line break at the end.
std::string numberedLines(std::span<const std::string> items);

} // namespace Sorvane
