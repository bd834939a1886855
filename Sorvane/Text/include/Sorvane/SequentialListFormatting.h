// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string>
#include <string_view>

// Spoken sequences: "first wash the car, then buy milk, then call mom".
namespace Sorvane::SequentialListFormatting {

// The cleaned text as a numbered list if it and the original hold the same sequence, step by step; else the cleaned
// text as it is. A pure function, safe on any thread.
std::string restoringLayout(std::string_view cleaned, std::string_view original);

} // namespace Sorvane::SequentialListFormatting
