// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
import QtQuick

// The voice orb with what a press on it does, shown while the pointer is over it.
Item {
    id: root

    property QtObject panel

    Accessible.role: Accessible.Button
    Accessible.name: panel ? panel.orbLabel : ""
    Accessible.onPressAction: root.panel.pressOrb()

    VoiceOrb {
        anchors.fill: parent
        orb: root.panel ? root.panel.orb : null
    }

    Rectangle {
        anchors.centerIn: parent
        width: 28
        height: 28
        radius: 14
        color: "black"
        opacity: hover.hovered || (root.panel && root.panel.showsProgress) ? 0.65 : 0
    }

    Symbol {
        anchors.centerIn: parent
        visible: hover.hovered
        name: root.panel ? root.panel.orbSymbol : ""
    }

    Progress {
        anchors.centerIn: parent
        visible: root.panel && root.panel.showsProgress && !hover.hovered
    }

    HoverHandler { id: hover }
    TapHandler { onTapped: root.panel.pressOrb() }
}
