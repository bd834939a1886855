// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "RunningInstance.h"

#include <gtest/gtest.h>
#include <TemporaryFolder.h>

#include <cstdlib>
#include <optional>

namespace Sorvane {
namespace {

class RunningInstanceTest : public ::testing::Test {
protected:
    RunningInstanceTest() { ::setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1); }
    ~RunningInstanceTest() override { ::unsetenv("XDG_RUNTIME_DIR"); }

    TestSupport::TemporaryFolder folder;
};

TEST_F(RunningInstanceTest, IsTheOnlyOneWhileItLives)
{
    auto first = std::make_optional<RunningInstance>();
    EXPECT_THROW(RunningInstance(), AlreadyRunningError);
    first.reset();
    EXPECT_NO_THROW(RunningInstance());
}

TEST_F(RunningInstanceTest, TakesNoFileThatSomebodyElsePointsAt)
{
    folder.write("target", "theirs");
    std::filesystem::create_symlink(folder / "target", folder / "sorvane.lock");
    EXPECT_THROW(RunningInstance(), std::system_error);
    EXPECT_EQ(folder.contents("target"), "theirs");
}

} // namespace
} // namespace Sorvane
