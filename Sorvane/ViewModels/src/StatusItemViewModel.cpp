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
    const auto readiness = controller.readiness();
    return statusItem({ .phase = controller.phase(),
        .canRecord = !readiness.blocker(),
        .setupComplete = readiness.isSetUp(),
        .status = controller.status() });
}

} // namespace

StatusItemViewModel::StatusItemViewModel(DictationController& controller, Commands commands, QObject* parent)
    : QObject(parent)
    , controller_(controller)
    , commands_(std::move(commands))
    , item_(itemOf(controller))
    , changes_(controller.subscribe([this] { refresh(); }))
{
}

QString StatusItemViewModel::toolTip() const
{
    return words(item_.toolTip);
}

void StatusItemViewModel::open()
{
    controller_.refreshPermissions();
}

void StatusItemViewModel::perform(StatusItem::Action action)
{
    switch (action) {
    case StatusItem::Action::none:
        return;
    case StatusItem::Action::toggle:
        return controller_.toggleFromButton();
    case StatusItem::Action::togglePause:
        return controller_.togglePause();
    case StatusItem::Action::cancel:
        return controller_.cancel();
    case StatusItem::Action::setup:
        return commands_.setup();
    case StatusItem::Action::quit:
        return commands_.quit();
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
