// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Words.h"

#include <Sorvane/DictationController.h>
#include <Sorvane/StatusItemViewModel.h>

#include <utility>

namespace Sorvane {

namespace {

StatusItem itemOf(const DictationController& controller)
{
    return statusItem(controller.phase(), !controller.readiness().blocker());
}

} // namespace

StatusItemViewModel::StatusItemViewModel(DictationController& controller, std::function<void()> quit, QObject* parent)
    : QObject(parent)
    , controller_(controller)
    , quit_(std::move(quit))
    , item_(itemOf(controller))
    , changes_(controller.subscribe([this] { refresh(); }))
{
}

QString StatusItemViewModel::toolTip() const
{
    return words(item_.toolTip);
}

void StatusItemViewModel::perform(StatusItem::Action action)
{
    switch (action) {
    case StatusItem::Action::toggle:
        return controller_.toggleFromButton();
    case StatusItem::Action::togglePause:
        return controller_.togglePause();
    case StatusItem::Action::cancel:
        return controller_.cancel();
    case StatusItem::Action::quit:
        return quit_();
    }
}

void StatusItemViewModel::refresh()
{
    StatusItem item = itemOf(controller_);
    if (item == item_)
        return;
    item_ = std::move(item);
    emit changed();
}

} // namespace Sorvane
