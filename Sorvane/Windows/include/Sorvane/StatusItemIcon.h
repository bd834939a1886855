// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

#include <string>

namespace Sorvane {

class StatusItemViewModel;

// The application's icon in the desktop's tray, with its menu. Where the desktop has no tray it is not seen; it appears
// when one comes.
//
// Main thread. The view model must outlive it.
class StatusItemIcon : public QObject {
    Q_OBJECT

public:
    explicit StatusItemIcon(StatusItemViewModel& model);

    // Shows a line to the user for a moment, where the desktop has a place for that.
    void tell(const std::string& line);

    QMenu& menu() { return menu_; }

private:
    void refresh();

    StatusItemViewModel& model_;
    QMenu menu_;
    QSystemTrayIcon icon_;
};

} // namespace Sorvane
