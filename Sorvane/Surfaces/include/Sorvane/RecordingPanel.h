// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/CompletionFeedback.h>
#include <Sorvane/DictationPhase.h>

namespace Sorvane {

// Where on the screen something stands, in points from the top left corner of all screens.
struct ScreenRectangle {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    bool operator==(const ScreenRectangle&) const = default;
};

// What the floating panel of a dictation holds.
enum class RecordingPanelContent { nothing, recorderBar, confirmation, review };

RecordingPanelContent recordingPanelContent(DictationPhase phase, CompletionFeedback::State notice);

// The panel's place: in the horizontal middle of what a screen leaves free of bars and docks, a little above its
// bottom.
ScreenRectangle recordingPanelPlace(const ScreenRectangle& visibleFrame, CompletionFeedback::State notice);

} // namespace Sorvane
