// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Accessibility/Tree.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace DesktopLinux {

// Looks for the element that has the focus in the active window of a program, level by level: of two that say that they
// have it, the upper one takes the keys. All elements of a level are asked at once.
//
// Pages are left to the end: something in a page keeps the focus while the user is at the browser's own fields.
class FocusSearch {
public:
    FocusSearch(Tree& tree, Deadline deadline)
        : tree_(tree)
        , deadline_(deadline)
    {
    }

    // Nothing if there is none, or the program does not answer in time.
    std::optional<ObjectReference> run(const ObjectReference& program);

private:
    using Elements = std::vector<ObjectReference>;

    Elements activeWindows(const ObjectReference& program);
    std::optional<ObjectReference> searchBelow(Elements level);
    std::optional<ObjectReference> searchLevel(const Elements& level, Elements& next);

    Tree& tree_;
    Deadline deadline_;
    Elements pages_; // that have been left out
    bool isInPages_ = false;
    size_t seen_ = 0;
};

} // namespace DesktopLinux
