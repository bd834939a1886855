// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/RecordingPanelViewModel.h>
#include <Sorvane/RecordingPanelWindow.h>

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <utility>

namespace Sorvane {

namespace {

constexpr auto panelFlags = Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus
    | Qt::NoDropShadowWindowHint;

// The one that the user is looking at, as far as the mouse tells.
QScreen* currentScreen()
{
    QScreen* const screen = QGuiApplication::screenAt(QCursor::pos());
    return screen != nullptr ? screen : QGuiApplication::primaryScreen();
}

ScreenRectangle visibleFrame(const QScreen& screen)
{
    const QRect free = screen.availableGeometry();
    return { double(free.x()), double(free.y()), double(free.width()), double(free.height()) };
}

} // namespace

RecordingPanelWindow::RecordingPanelWindow(RecordingPanelViewModel& panel)
    : panel_(panel)
{
    setFlags(panelFlags);
    setColor(Qt::transparent);
    setTitle(QStringLiteral("Sorvane"));
    setResizeMode(QQuickView::SizeRootObjectToView);
    setInitialProperties({ { QStringLiteral("panel"), QVariant::fromValue(&panel) } });
    setSource(QUrl(QStringLiteral("qrc:/Sorvane/RecordingPanel.qml")));
    connect(&panel, &RecordingPanelViewModel::changed, this, &RecordingPanelWindow::refresh);
    refresh();
}

void RecordingPanelWindow::refresh()
{
    if (std::exchange(content_, panel_.content()) == panel_.content())
        return;
    if (content_ == QStringLiteral("nothing"))
        return hide();
    place();
    show();
    raise();
}

void RecordingPanelWindow::place()
{
    QScreen* const screen = currentScreen();
    if (screen == nullptr)
        return;
    const auto [x, y, width, height] = panel_.placeOn(visibleFrame(*screen));
    setGeometry(QRectF(x, y, width, height).toRect());
}

} // namespace Sorvane
