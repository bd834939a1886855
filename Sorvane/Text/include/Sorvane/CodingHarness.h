// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace Sorvane {

// The coding agent that a terminal at the destination runs.
enum class CodingHarness { claudeCode, codex };

inline constexpr std::array allCodingHarnesses { CodingHarness::claudeCode, CodingHarness::codex };

// As stored, and what the user reads: "Claude Code", "Codex".
std::string_view rawValue(CodingHarness harness);
std::optional<CodingHarness> codingHarness(std::string_view rawValue);

} // namespace Sorvane
