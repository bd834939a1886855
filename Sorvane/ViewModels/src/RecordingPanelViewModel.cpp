// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Words.h"

#include <Sorvane/DictationController.h>
#include <Sorvane/RecordingPanelViewModel.h>

namespace Sorvane {

RecordingPanelViewModel::RecordingPanelViewModel(
    DictationController& controller, const PlatformSupport::Clock& clock, QObject* parent)
    : QObject(parent)
    , controller_(controller)
    , bar_(recorderBar(controller.phase()))
    , orb_(clock)
    , changes_(controller.subscribe([this] { refresh(); }))
{
}

QString RecordingPanelViewModel::content() const
{
    switch (recordingPanelContent(controller_.phase(), controller_.completion().state())) {
    case RecordingPanelContent::recorderBar:
        return QStringLiteral("recorderBar");
    case RecordingPanelContent::confirmation:
        return QStringLiteral("confirmation");
    case RecordingPanelContent::review:
        return QStringLiteral("review");
    case RecordingPanelContent::nothing:
        break;
    }
    return QStringLiteral("nothing");
}

QString RecordingPanelViewModel::label()
{
    return words(RecorderBar::label);
}

QString RecordingPanelViewModel::value() const
{
    return words(bar_.value);
}

bool RecordingPanelViewModel::recording() const
{
    return controller_.phase() == DictationPhase::recording;
}

QString RecordingPanelViewModel::orbLabel() const
{
    return words(bar_.orb.label);
}

QString RecordingPanelViewModel::orbSymbol() const
{
    return words(bar_.orb.symbol);
}

QString RecordingPanelViewModel::stopLabel() const
{
    return bar_.stop ? words(bar_.stop->label) : QString();
}

QString RecordingPanelViewModel::confirmation() const
{
    return words(controller_.completion().confirmationText());
}

QString RecordingPanelViewModel::transcript() const
{
    return words(controller_.transcript());
}

bool RecordingPanelViewModel::saved() const
{
    return controller_.savedToHistory();
}

ScreenRectangle RecordingPanelViewModel::placeOn(const ScreenRectangle& visibleFrame) const
{
    return recordingPanelPlace(visibleFrame, controller_.completion().state());
}

void RecordingPanelViewModel::pressOrb()
{
    if (bar_.orb.action == RecorderBar::Action::cancel)
        controller_.cancel();
    else
        controller_.togglePause();
}

void RecordingPanelViewModel::pressStop()
{
    controller_.finish();
}

void RecordingPanelViewModel::dismiss()
{
    controller_.completion().dismiss();
}

void RecordingPanelViewModel::refresh()
{
    bar_ = recorderBar(controller_.phase());
    orb_.follow(controller_.level(), recording());
    emit changed();
}

} // namespace Sorvane
