// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InstallerTestbed.h"

#include <PlatformSupport/FileDescriptor.h>
#include <PlatformSupport/HandTurnedClock.h>
#include <Sorvane/CleanupFailure.h>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

namespace Sorvane {
namespace {

using namespace std::chrono_literals;
using testing::UnorderedElementsAre;

struct InstallerCancellation : testing::Test, TestClock<PlatformSupport::HandTurnedClock>, InstallerTestbed {
    InstallerCancellation()
        : InstallerTestbed(clock)
    {
    }

    // Starts a preparation of tools that are yet to be proved, one of which waits for a signal instead of telling its
    // version. Comes back when it does.
    PlatformSupport::Task<> startWithToolThatWaits(const std::string& tool)
    {
        prepare();
        std::filesystem::remove(files.directory / ".runtime-b10809-ready");
        write("runtime/" + tool + ".case", "wait\n");
        const auto pipe = files.runtime() / (tool + ".alive");
        EXPECT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
        auto task = start();
        loop.turn();
        const PlatformSupport::FileDescriptor alive(::open(pipe.c_str(), O_RDONLY | O_CLOEXEC));
        char ready = 0;
        EXPECT_EQ(::read(alive.number(), &ready, 1), 1);
        return task;
    }

    void advanceOnceAsleep(PlatformSupport::Clock::Duration by)
    {
        while (clock.sleepers() == 0)
            std::this_thread::yield();
        clock.advance(by);
    }
};

TEST_F(InstallerCancellation, LeavesNoMarkerWhenItComesWhileAToolIsProved)
{
    for (const char* const tool : { "llama-completion", "llama-tokenize" }) {
        const auto task = startWithToolThatWaits(tool);
        task.cancel();
        EXPECT_ANY_THROW(loop.finish(task));
        EXPECT_THAT(names(), UnorderedElementsAre("downloads", "model.gguf", "runtime")) << tool;
        std::filesystem::remove_all(files.directory);
    }
}

TEST_F(InstallerCancellation, ComesBeforeAnyDownload)
{
    const auto task = start();
    task.cancel();
    EXPECT_THROW(loop.finish(task), PlatformSupport::CancellationError);
    EXPECT_TRUE(server.requests.empty());
}

TEST_F(InstallerCancellation, KeepsWhatIsVerifiedAndNothingElse)
{
    size_t answers = 0;
    server.onAnswer = [&] {
        if (++answers == 2)
            PlatformSupport::TaskContext::current()->cancel();
    };
    EXPECT_THROW(prepare(), PlatformSupport::CancellationError);
    EXPECT_THAT(names(), UnorderedElementsAre("downloads", "model.gguf"));
    EXPECT_TRUE(std::filesystem::is_empty(files.directory / "downloads"));
    server.onAnswer = {};
    prepare();
    expectInstalled();
}

TEST_F(InstallerCancellation, IsNotWhatHappensToAToolThatTakesTooLong)
{
    const auto task = startWithToolThatWaits("llama-completion");
    advanceOnceAsleep(60s);
    EXPECT_THROW(loop.finish(task), CleanupFailure);
    EXPECT_TRUE(exists(".runtime-needs-repair"));
    EXPECT_FALSE(exists(".runtime-b10809-ready"));
}

} // namespace
} // namespace Sorvane
