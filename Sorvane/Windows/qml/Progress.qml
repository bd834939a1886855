// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
import QtQuick

// A small ring that turns while something takes its time.
Canvas {
    id: root

    width: 14
    height: 14

    onPaint: {
        const c = getContext("2d");
        c.reset();
        c.strokeStyle = "white";
        c.lineWidth = 2;
        c.lineCap = "round";
        c.arc(7, 7, 5.5, 0, 1.5 * Math.PI);
        c.stroke();
    }

    RotationAnimation on rotation {
        running: root.visible
        loops: Animation.Infinite
        duration: 900
        from: 0
        to: 360
    }
}
