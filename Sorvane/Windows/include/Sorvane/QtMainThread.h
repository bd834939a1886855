// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/HostedLoop.h>

#include <QObject>

namespace Sorvane {

// The thread of the application's windows as the place where everything else of the application runs, too.
//
// To be made on that thread, after the QGuiApplication.
class QtMainThread : public QObject {
    Q_OBJECT

public:
    QtMainThread();

    PlatformSupport::Executor executor() { return loop_.executor(); }

private:
    PlatformSupport::HostedLoop loop_;
};

} // namespace Sorvane
