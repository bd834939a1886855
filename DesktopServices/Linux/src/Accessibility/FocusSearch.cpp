// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/FocusSearch.h"

#include "Accessibility/Roles.h"

#include <utility>

namespace DesktopLinux {

namespace {

// A search ends after so many elements.
constexpr size_t mostElements = 2000;

// What an element is asked.
struct Questions {
    Questions(Tree& tree, const ObjectReference& element)
        : role(tree.role(element))
        , states(tree.states(element))
        , children(tree.children(element))
    {
    }

    PendingAnswer<std::uint32_t> role;
    PendingAnswer<ElementStates> states;
    PendingAnswer<std::vector<ObjectReference>> children;
};

} // namespace

std::optional<ObjectReference> FocusSearch::run(const ObjectReference& program)
{
    if (auto found = searchBelow(activeWindows(program)))
        return found;
    isInPages_ = true;
    return searchBelow(std::exchange(pages_, {}));
}

FocusSearch::Elements FocusSearch::activeWindows(const ObjectReference& program)
{
    const auto windows = tree_.children(program).by(deadline_).value;
    std::vector<PendingAnswer<ElementStates>> asked;
    asked.reserve(windows.size());
    for (const auto& window : windows)
        asked.push_back(tree_.states(window));
    Elements active;
    for (size_t i = 0; i < windows.size(); ++i)
        if (asked[i].by(deadline_).value.has(ElementState::active))
            active.push_back(windows[i]);
    return active;
}

std::optional<ObjectReference> FocusSearch::searchBelow(Elements level)
{
    while (!level.empty() && seen_ < mostElements) {
        Elements next;
        if (auto found = searchLevel(level, next))
            return found;
        level = std::move(next);
    }
    return std::nullopt;
}

std::optional<ObjectReference> FocusSearch::searchLevel(const Elements& level, Elements& next)
{
    std::vector<Questions> asked;
    for (const auto& element : level)
        if (++seen_ <= mostElements)
            asked.emplace_back(tree_, element);
    for (size_t i = 0; i < asked.size(); ++i) {
        const auto states = asked[i].states.by(deadline_).value;
        if (!states.has(ElementState::visible))
            continue;
        if (!isInPages_ && isWebPage(asked[i].role.by(deadline_).value)) {
            pages_.push_back(level[i]);
            continue;
        }
        if (states.has(ElementState::focused))
            return level[i];
        const auto children = asked[i].children.by(deadline_).value;
        next.insert(next.end(), children.begin(), children.end());
    }
    return std::nullopt;
}

} // namespace DesktopLinux
