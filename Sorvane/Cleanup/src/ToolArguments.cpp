// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ToolArguments.h"

namespace Sorvane {

size_t tokenBudget(size_t transcriptTokens)
{
    constexpr size_t margin = 32;
    return (transcriptTokens * 13 + 9) / 10 + margin;
}

std::vector<std::string> tokeniserArguments(const std::filesystem::path& model)
{
    return { "--model", model, "--ids", "--no-bos", "--no-parse-special", "--no-escape", "--offline" };
}

std::vector<std::string> generatorArguments(const std::filesystem::path& model, size_t tokenBudget)
{
    return {
        "--model",
        model,
        "--ctx-size",
        "4096",
        "--n-predict",
        std::to_string(tokenBudget),
        "--temp",
        "0",
        "--seed",
        "42",
        "--threads",
        "4",
        "--offline",
        "--no-escape",
        "--no-conversation",
        "--no-display-prompt",
        "--simple-io",
        "--no-warmup",
        "--special",
        "--no-context-shift",
    };
}

} // namespace Sorvane
