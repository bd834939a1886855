// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/StatusItemIcon.h>
#include <Sorvane/StatusItemViewModel.h>

#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace Sorvane {

namespace {

constexpr int side = 64; // pixels; the tray makes of it what it needs

// A ribbon with one twist, in a grey that light and dark panels show.
QIcon ribbon()
{
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / 20.0, side / 20.0);
    QPainterPath path(QPointF(10, 10));
    path.cubicTo(13, 5, 18, 5, 18, 10);
    path.cubicTo(18, 15, 13, 15, 10, 10);
    path.cubicTo(7, 5, 2, 5, 2, 10);
    path.cubicTo(2, 15, 7, 15, 10, 10);
    painter.strokePath(path, QPen(QColor(0x90, 0x90, 0x90), 2.4, Qt::SolidLine, Qt::RoundCap));
    return { pixmap };
}

} // namespace

StatusItemIcon::StatusItemIcon(StatusItemViewModel& model)
    : model_(model)
{
    icon_.setIcon(ribbon());
    icon_.setContextMenu(&menu_);
    connect(&model, &StatusItemViewModel::changed, this, &StatusItemIcon::refresh);
    connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            model_.perform(StatusItem::Action::toggle);
    });
    connect(&menu_, &QMenu::aboutToShow, &model, &StatusItemViewModel::open);
    refresh();
    icon_.show();
}

void StatusItemIcon::tell(const std::string& line)
{
    icon_.showMessage(QStringLiteral("Sorvane"), QString::fromStdString(line), icon_.icon());
}

// The menu is filled anew: it holds no more than a few entries, and which they are depends on the phase.
void StatusItemIcon::refresh()
{
    icon_.setToolTip(model_.toolTip());
    menu_.clear();
    for (const auto& entry : model_.item().menu) {
        QAction* const action = menu_.addAction(QString::fromStdString(entry.title));
        action->setEnabled(entry.isEnabled);
        connect(action, &QAction::triggered, this, [this, what = entry.action] { model_.perform(what); });
    }
}

} // namespace Sorvane
