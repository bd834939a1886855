// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
import QtQuick

// A white symbol of 12 points.
Canvas {
    id: root

    property string name

    width: 12
    height: 12
    onNameChanged: requestPaint()

    onPaint: {
        const c = getContext("2d");
        c.reset();
        c.fillStyle = "white";
        c.strokeStyle = "white";
        c.lineWidth = 2;
        c.lineCap = "round";
        if (name === "pause.fill") {
            c.fillRect(2, 1, 3, 10);
            c.fillRect(7, 1, 3, 10);
        } else if (name === "play.fill") {
            c.moveTo(2.5, 1);
            c.lineTo(11, 6);
            c.lineTo(2.5, 11);
            c.closePath();
            c.fill();
        } else if (name === "stop.fill") {
            c.roundedRect(1.5, 1.5, 9, 9, 2, 2);
            c.fill();
        } else if (name === "xmark") {
            c.moveTo(2, 2);
            c.lineTo(10, 10);
            c.moveTo(10, 2);
            c.lineTo(2, 10);
            c.stroke();
        } else if (name === "checkmark.circle.fill") {
            c.lineWidth = 1.6;
            c.moveTo(2, 6.5);
            c.lineTo(5, 9.5);
            c.lineTo(10.5, 3);
            c.stroke();
        }
    }
}
