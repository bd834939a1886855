// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
import QtQuick

// The finished transcript, to be read.
Rectangle {
    id: root

    property QtObject panel

    radius: 16
    color: "#f01c1c1e"
    border { width: 1; color: "#33ffffff" }

    Accessible.role: Accessible.Pane
    Accessible.name: heading.text

    Column {
        anchors { fill: parent; margins: 16 }
        spacing: 4

        Text {
            id: heading
            text: qsTr("Transcript ready")
            color: "white"
            font { pixelSize: 14; bold: true }
        }

        Text {
            visible: root.panel && !root.panel.saved
            text: qsTr("Not saved, copy to keep")
            color: "#ffb86b"
            font.pixelSize: 12
        }

        Flickable {
            width: parent.width
            height: parent.height - y
            contentHeight: transcript.height
            clip: true

            Text {
                id: transcript
                width: parent.width
                text: root.panel ? root.panel.transcript : ""
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: "#e6ffffff"
                font.pixelSize: 13
            }
        }
    }

    SymbolButton {
        anchors { right: parent.right; top: parent.top; margins: 8 }
        width: 32
        height: 32
        symbol: "xmark"
        label: qsTr("Clear preview")
        onPressed: root.panel.dismiss()
    }
}
