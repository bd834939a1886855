// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WindowTest.h"

#include <QApplication>
#include <QDir>
#include <QTest>

namespace Sorvane {

namespace {

class Application : public ::testing::Environment {
public:
    void SetUp() override
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_QUICK_BACKEND", "software");
        application_ = std::make_unique<QApplication>(count_, values_);
        QApplication::setQuitOnLastWindowClosed(false);
    }
    void TearDown() override { application_.reset(); }

private:
    int count_ = 1;
    std::string name_ = "SorvaneWindowsTests";
    char* values_[2] = { name_.data(), nullptr };
    std::unique_ptr<QApplication> application_;
};

const auto* const application = ::testing::AddGlobalTestEnvironment(new Application);

void failOnComplaintAboutASurface(QtMsgType, const QMessageLogContext&, const QString& message)
{
    if (message.contains("qrc:/"))
        ADD_FAILURE() << message.toStdString();
}

} // namespace

WindowTest::WindowTest()
{
    qInstallMessageHandler(failOnComplaintAboutASurface);
}

WindowTest::~WindowTest()
{
    qInstallMessageHandler(nullptr);
}

QImage WindowTest::picture(QQuickWindow& window, const QString& name)
{
    const bool isShown = QTest::qWaitForWindowExposed(&window);
    EXPECT_TRUE(isShown);
    const QImage image = window.grabWindow();
    if (const QString folder = qEnvironmentVariable("SORVANE_SCREENSHOTS"); !folder.isEmpty()) {
        EXPECT_TRUE(image.save(QDir(folder).filePath(name + ".png")));
    }
    return image;
}

} // namespace Sorvane
