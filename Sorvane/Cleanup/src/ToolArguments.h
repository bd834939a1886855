// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace Sorvane {

// The longest transcript that is generated for.
inline constexpr size_t longestTranscript = 1000; // tokens

// Tokens that the generator may write for a transcript: 1.3 times its own, rounded up, and 32. The tidied text is about
// as long as the transcript; one that overruns this has no stop marker.
size_t tokenBudget(size_t transcriptTokens);

// Prints the ids of a text's tokens, with nothing added and nothing in the text taken for more than text.
std::vector<std::string> tokeniserArguments(const std::filesystem::path& model);

// Continues a prompt, the same way each time, and prints its stop marker.
std::vector<std::string> generatorArguments(const std::filesystem::path& model, size_t tokenBudget);

} // namespace Sorvane
