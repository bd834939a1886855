// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/QtMainThread.h>

#include <QMetaObject>

namespace Sorvane {

QtMainThread::QtMainThread()
    : loop_([this] {
        QMetaObject::invokeMethod(
            this, [this] { loop_.runOne(); }, Qt::QueuedConnection);
    })
{
}

} // namespace Sorvane
