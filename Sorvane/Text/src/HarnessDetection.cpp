// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Regex/Letters.h>
#include <Regex/Trimming.h>
#include <Sorvane/HarnessDetection.h>

#include <algorithm>
#include <array>
#include <set>
#include <utility>
#include <vector>

namespace Sorvane::HarnessDetection {

namespace {

constexpr size_t longestTitle = 200; // characters; a longer one is a document's or a command's text

constexpr std::array<std::string_view, 7> terminals { "ghostty", "terminal", "iterm", "iterm2", "orca", "superset",
    "conductor" };

constexpr std::array<std::pair<std::string_view, CodingHarness>, 3> agents { {
    { "claude code", CodingHarness::claudeCode },
    { "openai codex", CodingHarness::codex },
    { "codex", CodingHarness::codex },
} };

// What stands between an agent's name and the rest of a title.
constexpr std::array<std::string_view, 4> separators { " · ", " — ", " - ", " | " };

std::string normalized(std::string_view label)
{
    return Regex::lowercased(Regex::trimmed(label));
}

bool isTerminal(std::string_view appName, const std::vector<std::string>& labels)
{
    return std::ranges::find(terminals, Regex::lowercased(appName)) != terminals.end()
        || std::ranges::any_of(labels, [](const auto& label) { return label.find("terminal") != std::string::npos; });
}

bool names(std::string_view label, const std::string& agent)
{
    return label == agent || label == agent + " terminal" || label == "terminal: " + agent
        || std::ranges::any_of(
            separators, [&](auto separator) { return label.starts_with(agent + std::string(separator)); });
}

std::set<CodingHarness> harnessesOf(const std::vector<std::string>& labels)
{
    std::set<CodingHarness> harnesses;
    for (const auto& label : labels)
        if (const auto harness = toolLabel(label))
            harnesses.insert(*harness);
    return harnesses;
}

} // namespace

std::optional<CodingHarness> toolLabel(std::string_view label)
{
    for (const auto& [agent, harness] : agents)
        if (names(label, std::string(agent)))
            return harness;
    return std::nullopt;
}

std::optional<CodingHarness> detect(
    std::string_view appName, std::span<const std::string> focusedLabels, const std::optional<std::string>& windowTitle)
{
    std::vector<std::string> labels(focusedLabels.size());
    std::ranges::transform(focusedLabels, labels.begin(), normalized);
    if (!isTerminal(appName, labels))
        return std::nullopt;
    const auto harnesses = harnessesOf(labels);
    if (!harnesses.empty())
        return harnesses.size() == 1 ? std::optional(*harnesses.begin()) : std::nullopt;
    if (!windowTitle || Regex::characterCount(*windowTitle) > longestTitle)
        return std::nullopt;
    return toolLabel(normalized(*windowTitle));
}

} // namespace Sorvane::HarnessDetection
