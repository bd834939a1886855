// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdio>

namespace Sorvane {

// One line on a terminal that says how far a transcription has come, and goes away when it is done.
class ProgressLine {
public:
    enum class Visible { no, yes };

    ProgressLine(std::FILE* terminal, Visible visible)
        : terminal_(terminal)
        , visible_(visible)
    {
    }
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void update(double fractionCompleted); // 0 to 1

private:
    std::FILE* terminal_;
    Visible visible_;
    int shownPercent_ = -1;
};

} // namespace Sorvane
