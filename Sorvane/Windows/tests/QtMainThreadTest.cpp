// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WindowTest.h"

#include <PlatformSupport/Task.h>
#include <Sorvane/QtMainThread.h>

#include <QCoreApplication>
#include <QTest>
#include <QThread>

#include <optional>
#include <thread>

namespace Sorvane {
namespace {

TEST_F(WindowTest, RunsTasksOnTheThreadOfTheWindows)
{
    QtMainThread main;
    QThread* where = nullptr;
    const auto work = [&]() -> PlatformSupport::Awaitable<void> {
        where = QThread::currentThread();
        co_return;
    };
    {
        const std::jthread other([&] { (void)PlatformSupport::startTask(main.executor(), work); });
    }
    EXPECT_EQ(where, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return where != nullptr; }));
    EXPECT_EQ(where, QCoreApplication::instance()->thread());
}

TEST_F(WindowTest, DropsWorkThatWaitsWhenItGoes)
{
    auto main = std::make_optional<QtMainThread>();
    bool ran = false;
    main->executor().execute([&ran] { ran = true; });
    main.reset();
    QCoreApplication::processEvents();
    EXPECT_FALSE(ran);
}

} // namespace
} // namespace Sorvane
