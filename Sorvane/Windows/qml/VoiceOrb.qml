// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
import QtQuick

// A surface that answers the voice: three soft lobes turn around the middle, and grow with the energy.
Item {
    id: root

    property QtObject orb
    readonly property real energy: orb ? orb.energy : 0
    readonly property real angle: orb ? orb.phase : 0

    Accessible.ignored: true

    FrameAnimation {
        running: root.orb !== null && root.orb.active && root.visible
        onTriggered: root.orb.advance()
    }

    Rectangle {
        id: body

        anchors.centerIn: parent
        width: 26 + 10 * root.energy
        height: width
        radius: width / 2
        gradient: Gradient {
            GradientStop { position: 0; color: "#6a8dff" }
            GradientStop { position: 1; color: "#8f5bff" }
        }
    }

    Repeater {
        model: ["#ff6fb5", "#4fd1ff", "#ffd166"]

        Rectangle {
            required property int index
            required property string modelData
            readonly property real direction: root.angle * (1 + 0.3 * index) + index * 2.1
            readonly property real reach: 2 + 5 * root.energy

            x: root.width / 2 + Math.cos(direction) * reach - width / 2
            y: root.height / 2 + Math.sin(direction) * reach - height / 2
            width: 14 + 8 * root.energy
            height: width
            radius: width / 2
            color: modelData
            opacity: 0.35 + 0.25 * root.energy
        }
    }
}
