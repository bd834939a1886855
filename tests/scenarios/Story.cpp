// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Story.h"

#include <cctype>
#include <fstream>
#include <stdexcept>

namespace Scenarios {

namespace {

// Reads the rest of a quoted text, in which "\n" is a line break.
std::string quoted(const std::string& line, size_t& place)
{
    std::string text;
    for (++place; place < line.size() && line[place] != '"'; ++place) {
        const bool isLineBreak = line.compare(place, 2, "\\n") == 0;
        text += isLineBreak ? '\n' : line[place];
        place += isLineBreak ? 1 : 0;
    }
    if (place++ >= line.size())
        throw std::runtime_error("a text without its closing quote: " + line);
    return text;
}

std::string bare(const std::string& line, size_t& place)
{
    const size_t end = std::min(line.find(' ', place), line.size());
    std::string word = line.substr(place, end - place);
    place = end;
    return word;
}

Step readStep(const std::string& line, size_t number)
{
    Step step { .line = number, .words = {}, .arguments = {} };
    for (size_t place = 0; place < line.size();) {
        if (line[place] == ' ')
            ++place;
        else if (line[place] == '"')
            step.arguments.push_back(quoted(line, place));
        else if (std::isdigit(static_cast<unsigned char>(line[place])) != 0)
            step.arguments.push_back(bare(line, place));
        else
            step.words += (step.words.empty() ? "" : " ") + bare(line, place);
    }
    return step;
}

} // namespace

const std::string& Step::text(size_t place) const
{
    return arguments.at(place);
}

double Step::number(size_t place) const
{
    return std::stod(arguments.at(place));
}

std::vector<Step> readStory(const std::filesystem::path& path)
{
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("cannot read " + path.string());
    std::vector<Step> steps;
    size_t number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (!line.empty() && line.front() != '#')
            steps.push_back(readStep(line, number));
    }
    return steps;
}

} // namespace Scenarios
