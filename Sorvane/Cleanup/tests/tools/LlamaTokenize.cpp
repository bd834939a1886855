// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ToolDouble.h"

#include <cctype>

namespace {

bool isBlank(char character)
{
    return std::isspace(static_cast<unsigned char>(character)) != 0;
}

} // namespace

// One token for each word with the blanks before it; their numbers say nothing.
int main(int count, char** values)
{
    const ToolCall call = beginTool(count, values,
        { { "--model", 1 }, { "--ids", 0 }, { "--no-bos", 0 }, { "--no-parse-special", 0 }, { "--no-escape", 0 },
            { "--offline", 0 }, { "--binary-file", 1 } });
    std::string ids;
    int next = 260;
    for (size_t i = 0; i < call.prompt.size(); ++i) {
        const bool endsToken = i + 1 == call.prompt.size() || (!isBlank(call.prompt[i]) && isBlank(call.prompt[i + 1]));
        if (endsToken)
            ids += (ids.empty() ? "" : ", ") + std::to_string(next++);
    }
    writeOut("[" + ids + "]\n");
    return 0;
}
