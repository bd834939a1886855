// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
import QtQuick

// The capsule with the voice orb, which pauses, resumes or cancels, and the control that finishes.
Item {
    id: root

    property QtObject panel

    Accessible.role: Accessible.ToolBar
    Accessible.name: panel ? panel.label : ""
    Accessible.description: panel ? panel.value : ""

    Rectangle {
        anchors.centerIn: parent
        width: root.panel ? root.panel.barWidth : 0
        height: root.panel ? root.panel.barHeight : 0
        radius: height / 2
        color: "#e61c1c1e"
        border { width: 1; color: "#33ffffff" }

        Row {
            anchors { fill: parent; margins: 4 }
            spacing: 8

            OrbButton {
                width: 40
                height: 40
                panel: root.panel
            }

            SymbolButton {
                visible: root.panel && root.panel.canStop
                width: 40
                height: 40
                symbol: "stop.fill"
                label: root.panel ? root.panel.stopLabel : ""
                onPressed: root.panel.pressStop()
            }
        }
    }
}
