// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ToolDouble.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <sstream>

namespace {

constexpr std::string_view startOfUser = "<|im_start|>user\n";
constexpr std::string_view startOfAnswer = "<|im_end|>\n<|im_start|>assistant\n";
constexpr std::string_view endOfTurn = "<|im_end|>";
constexpr std::string_view endOfText = " [end of text]\n\n\n";

std::vector<std::string> wordsOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

// What stands between the control line and the model's turn.
std::string transcriptIn(const std::string& prompt)
{
    const size_t control = prompt.find(startOfUser);
    const size_t end = prompt.rfind(startOfAnswer);
    if (control == std::string::npos || end == std::string::npos)
        return prompt;
    const size_t start = prompt.find('\n', control + startOfUser.size()) + 1;
    return prompt.substr(start, end - start);
}

bool isFiller(const std::string& word)
{
    std::string letters;
    for (const char character : word)
        if (std::isalpha(static_cast<unsigned char>(character)) != 0)
            letters += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    return letters == "um" || letters == "uh" || letters == "er" || letters == "erm";
}

// The words without hesitation, as a sentence.
std::vector<std::string> tidied(const std::string& transcript)
{
    auto words = wordsOf(transcript);
    std::erase_if(words, isFiller);
    if (words.empty())
        return words;
    words.front().front() = static_cast<char>(std::toupper(static_cast<unsigned char>(words.front().front())));
    std::string& last = words.back();
    if (last.back() == ',')
        last.pop_back();
    if (std::string_view(".!?").find(last.back()) == std::string_view::npos)
        last += '.';
    return words;
}

} // namespace

// Writes the transcript of its prompt without hesitation, a write for each word, and its stop marker.
int main(int count, char** values)
{
    const ToolCall call = beginTool(count, values,
        { { "--model", 1 }, { "--ctx-size", 1 }, { "--n-predict", 1 }, { "--temp", 1 }, { "--seed", 1 },
            { "--threads", 1 }, { "--offline", 0 }, { "--no-escape", 0 }, { "--no-conversation", 0 },
            { "--no-display-prompt", 0 }, { "--simple-io", 0 }, { "--no-warmup", 0 }, { "--special", 0 },
            { "--no-context-shift", 0 }, { "--binary-file", 1 } });
    constexpr int statusForAnEmptyPrompt = 255;
    constexpr size_t reservedTokens = 4;
    if (call.prompt.empty())
        return statusForAnEmptyPrompt;
    if (wordsOf(call.prompt).size() + reservedTokens > std::stoul(call.value("--ctx-size", "4096")))
        return 1;
    if (call.prompt.ends_with(endOfTurn)) {
        writeOut(endOfText);
        return 0;
    }

    const auto words = tidied(transcriptIn(call.prompt));
    const size_t budget = std::stoul(call.value("--n-predict", "1332"));
    for (size_t i = 0; i < std::min(words.size(), budget); ++i)
        writeOut((i == 0 ? "" : " ") + words[i]);
    if (words.size() >= budget) {
        writeOut("\n\n");
        return 0;
    }
    if (call.options.contains("--special"))
        writeOut(endOfTurn);
    writeOut(endOfText);
    return 0;
}
