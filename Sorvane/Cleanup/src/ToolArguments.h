// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Sorvane {

// The longest transcript that is generated for.
inline constexpr int longestTranscript = 1000; // tokens

// Tokens that the generator may write for a transcript: 1.3 times its own, rounded up, and 32. The tidied text is about
// as long as the transcript; one that overruns this has no stop marker.
int tokenBudget(int transcriptTokens);

// Prints the ids of a text's tokens, with nothing added and nothing in the text taken for more than text.
std::vector<std::string> tokeniserArguments(const std::filesystem::path& model);

// Continues a prompt, the same way each time, and prints its stop marker.
std::vector<std::string> generatorArguments(const std::filesystem::path& model, int tokenBudget);

} // namespace Sorvane
