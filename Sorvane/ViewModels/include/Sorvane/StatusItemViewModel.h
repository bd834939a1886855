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
    // What only the application itself can do.
    struct Commands {
        std::function<void()> setup;
        std::function<void()> quit;
    };

    StatusItemViewModel(DictationController& controller, Commands commands, QObject* parent = nullptr);

    const StatusItem& item() const { return item_; }
    QString toolTip() const;

    // The user is about to look at it: what he has allowed meanwhile is looked up.
    void open();

    void perform(StatusItem::Action action);

signals:
    void changed(); // only when something did

private:
    void refresh();

    DictationController& controller_;
    Commands commands_;
    StatusItem item_;
    PlatformSupport::Observers::Subscription changes_;
};

} // namespace Sorvane
