// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/RecordingPanel.h>

#include <utility>

namespace Sorvane {

namespace {

using State = CompletionFeedback::State;

constexpr double gapBelow = 36; // points between the panel and the screen's bottom

bool isUnderWay(DictationPhase phase)
{
    return phase == DictationPhase::recording || phase == DictationPhase::paused
        || phase == DictationPhase::transcribing;
}

std::pair<double, double> panelSize(State notice)
{
    switch (notice) {
    case State::confirmation:
        return { 228, 44 };
    case State::review:
        return { 380, 200 };
    case State::hidden:
        break;
    }
    return { 96, 48 };
}

} // namespace

RecordingPanelContent recordingPanelContent(DictationPhase phase, State notice)
{
    if (!isUnderWay(phase) && notice == State::hidden)
        return RecordingPanelContent::nothing;
    if (notice == State::confirmation)
        return RecordingPanelContent::confirmation;
    if (phase == DictationPhase::idle)
        return RecordingPanelContent::review;
    return RecordingPanelContent::recorderBar;
}

ScreenRectangle recordingPanelPlace(const ScreenRectangle& visibleFrame, State notice)
{
    const auto [width, height] = panelSize(notice);
    return {
        .x = visibleFrame.x + (visibleFrame.width - width) / 2,
        .y = visibleFrame.y + visibleFrame.height - gapBelow - height,
        .width = width,
        .height = height,
    };
}

} // namespace Sorvane
