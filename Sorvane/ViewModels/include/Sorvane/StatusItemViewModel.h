// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Observers.h>
#include <Sorvane/StatusItem.h>

#include <QObject>
#include <QString>

#include <functional>

namespace Sorvane {

class DictationController;

// Shows a dictation among the desktop's status items.
//
// Main thread. The controller must outlive it.
class StatusItemViewModel : public QObject {
    Q_OBJECT

public:
    StatusItemViewModel(DictationController& controller, std::function<void()> quit, QObject* parent = nullptr);

    const StatusItem& item() const { return item_; }
    QString toolTip() const;

    void perform(StatusItem::Action action);

signals:
    void changed(); // only when something did

private:
    void refresh();

    DictationController& controller_;
    std::function<void()> quit_;
    StatusItem item_;
    PlatformSupport::Observers::Subscription changes_;
};

} // namespace Sorvane
