// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/StatusItem.h>

namespace Sorvane {

namespace {

std::string_view toolTip(DictationPhase phase)
{
    switch (phase) {
    case DictationPhase::paused:
        return "Sorvane is paused";
    case DictationPhase::recording:
        return "Sorvane is recording";
    default:
        return "Sorvane dictation";
    }
}

std::string recordTitle(DictationPhase phase)
{
    switch (phase) {
    case DictationPhase::idle:
        return "Start dictation";
    case DictationPhase::preparing:
        return "Getting ready";
    case DictationPhase::recording:
    case DictationPhase::paused:
        return "Finish dictation";
    case DictationPhase::transcribing:
        break;
    }
    return "Finishing transcript";
}

} // namespace

StatusItem statusItem(const StatusItemState& state)
{
    using Action = StatusItem::Action;
    const bool isPaused = state.phase == DictationPhase::paused;
    const bool isCaptured = isPaused || state.phase == DictationPhase::recording;
    StatusItem item { .toolTip = toolTip(state.phase), .menu = {} };
    item.menu.push_back({ state.status, Action::none, false });
    item.menu.push_back({ recordTitle(state.phase), Action::toggle, isCaptured || state.canRecord });
    if (isCaptured)
        item.menu.push_back({ isPaused ? "Resume dictation" : "Pause dictation", Action::togglePause });
    if (isCaptured || state.phase == DictationPhase::transcribing)
        item.menu.push_back({ "Cancel dictation", Action::cancel });
    if (!state.setupComplete && state.phase == DictationPhase::idle)
        item.menu.push_back({ "Finish setup", Action::setup });
    item.menu.push_back({ "Quit Sorvane", Action::quit });
    return item;
}

} // namespace Sorvane
