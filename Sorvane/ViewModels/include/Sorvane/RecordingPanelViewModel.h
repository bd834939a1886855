// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Observers.h>
#include <Sorvane/RecorderBar.h>
#include <Sorvane/RecordingPanel.h>
#include <Sorvane/VoiceOrbViewModel.h>

#include <QObject>
#include <QString>

namespace Sorvane {

class DictationController;

// Shows a dictation in the floating panel.
//
// Main thread. The controller and the clock must outlive it.
class RecordingPanelViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString content READ content NOTIFY changed) // "nothing", "recorderBar", "confirmation" or "review"
    Q_PROPERTY(QString label READ label CONSTANT)
    Q_PROPERTY(QString value READ value NOTIFY changed)
    Q_PROPERTY(int barWidth READ barWidth NOTIFY changed)
    Q_PROPERTY(int barHeight READ barHeight CONSTANT)
    Q_PROPERTY(bool recording READ recording NOTIFY changed)
    Q_PROPERTY(bool showsProgress READ showsProgress NOTIFY changed)
    Q_PROPERTY(QString orbLabel READ orbLabel NOTIFY changed)
    Q_PROPERTY(QString orbSymbol READ orbSymbol NOTIFY changed)
    Q_PROPERTY(bool canStop READ canStop NOTIFY changed)
    Q_PROPERTY(QString stopLabel READ stopLabel NOTIFY changed)
    Q_PROPERTY(Sorvane::VoiceOrbViewModel* orb READ orb CONSTANT)
    Q_PROPERTY(QString confirmation READ confirmation NOTIFY changed)
    Q_PROPERTY(QString transcript READ transcript NOTIFY changed)
    Q_PROPERTY(bool saved READ saved NOTIFY changed) // the transcript stands in the history

public:
    RecordingPanelViewModel(
        DictationController& controller, const PlatformSupport::Clock& clock, QObject* parent = nullptr);

    QString content() const;
    static QString label();
    QString value() const;
    int barWidth() const { return bar_.width; }
    static int barHeight() { return RecorderBar::height; }
    bool recording() const;
    bool showsProgress() const { return bar_.showsProgress; }
    QString orbLabel() const;
    QString orbSymbol() const;
    bool canStop() const { return bar_.stop.has_value(); }
    QString stopLabel() const;
    VoiceOrbViewModel* orb() { return &orb_; }
    QString confirmation() const;
    QString transcript() const;
    bool saved() const;

    // Where the panel stands on a screen that leaves this free.
    ScreenRectangle placeOn(const ScreenRectangle& visibleFrame) const;

    Q_INVOKABLE void pressOrb();
    Q_INVOKABLE void pressStop();
    Q_INVOKABLE void dismiss();

signals:
    void changed();

private:
    void refresh();

    DictationController& controller_;
    RecorderBar bar_;
    VoiceOrbViewModel orb_;
    PlatformSupport::Observers::Subscription changes_;
};

} // namespace Sorvane
