// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/CodingHarness.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

// Finds out whether the place where a dictation goes is a terminal that runs a coding agent. Pure functions, safe on
// any thread.
namespace Sorvane::HarnessDetection {

// From the application's name, the accessible names of the focused element, and the title of its window. An
// application that is no terminal has none, nor has one whose labels name two.
std::optional<CodingHarness> detect(std::string_view appName, std::span<const std::string> focusedLabels,
    const std::optional<std::string>& windowTitle);

// The agent that a label names, alone, with "terminal", or with more behind a separator. The label is in lower case.
std::optional<CodingHarness> toolLabel(std::string_view label);

} // namespace Sorvane::HarnessDetection
