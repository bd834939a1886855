// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ProgressLine.h"

namespace Sorvane {

namespace {

constexpr const char* eraseLine = "\r\033[K";

}

ProgressLine::~ProgressLine()
{
    if (shownPercent_ < 0)
        return;
    std::fputs(eraseLine, terminal_);
    std::fflush(terminal_);
}

void ProgressLine::update(double fractionCompleted)
{
    const int percent = static_cast<int>(fractionCompleted * 100);
    if (visible_ == Visible::no || percent == shownPercent_)
        return;
    shownPercent_ = percent;
    std::fprintf(terminal_, "%sTranscribing … %d %%", eraseLine, percent);
    std::fflush(terminal_);
}

} // namespace Sorvane
