// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
import QtQuick

// What became of a dictation, in a few words that go by themselves.
Rectangle {
    id: root

    property QtObject panel

    radius: height / 2
    color: "#e61c1c1e"
    border { width: 1; color: "#33ffffff" }

    Accessible.role: Accessible.AlertMessage
    Accessible.name: message.text

    Row {
        anchors { left: parent.left; leftMargin: 16; verticalCenter: parent.verticalCenter }
        spacing: 10

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: "checkmark.circle.fill"
        }

        Text {
            id: message
            anchors.verticalCenter: parent.verticalCenter
            text: root.panel ? root.panel.confirmation : ""
            color: "white"
            font.pixelSize: 13
        }
    }

    SymbolButton {
        anchors { right: parent.right; rightMargin: 4; verticalCenter: parent.verticalCenter }
        width: 36
        height: 36
        symbol: "xmark"
        label: qsTr("Dismiss confirmation")
        onPressed: root.panel.dismiss()
    }
}
