// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
import QtQuick

Item {
    id: root

    property alias symbol: picture.name
    property string label
    signal pressed

    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.onPressAction: root.pressed()

    Rectangle {
        anchors.centerIn: parent
        width: 32
        height: 32
        radius: 16
        color: "white"
        opacity: hover.hovered ? 0.18 : 0.08
    }

    Symbol {
        id: picture
        anchors.centerIn: parent
    }

    HoverHandler { id: hover }
    TapHandler { onTapped: root.pressed() }
}
