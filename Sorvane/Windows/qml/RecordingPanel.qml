// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
import QtQuick

// The floating panel of a dictation: the recorder bar, a short confirmation, or the transcript to read.
Item {
    id: root

    required property QtObject panel

    Loader {
        anchors.fill: parent
        source: root.panel.content === "recorderBar" ? "RecorderBar.qml"
              : root.panel.content === "confirmation" ? "Confirmation.qml"
              : root.panel.content === "review" ? "Review.qml" : ""
        onLoaded: item.panel = Qt.binding(() => root.panel)
    }
}
