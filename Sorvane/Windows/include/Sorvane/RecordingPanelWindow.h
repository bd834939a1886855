// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <QQuickView>
#include <QString>

namespace Sorvane {

class RecordingPanelViewModel;

// The small window that floats over everything during a dictation. It never takes the keyboard from the application
// that is dictated into, and it is on the screen only while there is something to show.
//
// Main thread. The view model must outlive it.
class RecordingPanelWindow : public QQuickView {
    Q_OBJECT

public:
    explicit RecordingPanelWindow(RecordingPanelViewModel& panel);

private:
    void refresh();
    void place();

    RecordingPanelViewModel& panel_;
    QString content_ = QStringLiteral("nothing"); // what is on the screen
};

} // namespace Sorvane
