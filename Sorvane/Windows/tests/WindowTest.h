// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DictationOnFakes.h>
#include <gtest/gtest.h>
#include <QImage>
#include <QQuickWindow>
#include <QString>
#include <QStringList>

namespace Sorvane {

// Windows are drawn in memory. A surface that Qt complains of fails its test: a property that a view model
// does not have is no more than a message otherwise.
class WindowTest : public ::testing::Test {
protected:
    WindowTest();
    ~WindowTest() override;

    // The picture that is on the screen. It is kept as NAME.png in the folder that SORVANE_SCREENSHOTS names, if it
    // names one, for whoever wants to look at it.
    static QImage picture(QQuickWindow& window, const QString& name);

    DictationOnFakes dictation;
};

} // namespace Sorvane
