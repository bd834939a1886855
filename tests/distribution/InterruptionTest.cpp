// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// What goes wrong on this side: the user, the disk, the program.
#include "Download.h"

#include <ModelStore/ModelStoreError.h>
#include <PlatformSupport/BlockingPool.h>
#include <PlatformSupport/BlockingValue.h>
#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/Task.h>

#include <FileSizeLimit.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <thread>

extern char** environ;

using TestSupport::TestHub;

namespace {

class InterruptionTest : public testing::Test {
protected:
    InterruptionTest() { Download::publish(hub); }

    void stallInTheMiddle() const { hub.play(R"({"on": "content/weights/b.bin", "fault": "stall", "after": 200000})"); }

    // The bytes of the file that is on its way.
    static int64_t bytesOnTheirWay(const Download& download)
    {
        namespace fs = std::filesystem;
        std::error_code ignored;
        const fs::path folder = fs::path(download.store().location(download.spec())) / ".trw-meta/weights";
        for (const auto& entry : fs::directory_iterator(folder, ignored))
            if (entry.path().extension() == ".temporary")
                return static_cast<int64_t>(fs::file_size(entry.path(), ignored));
        return 0;
    }
    static void waitForTheMiddle(const Download& download)
    {
        while (bytesOnTheirWay(download) < 200'000)
            std::this_thread::yield();
    }

    TestHub hub;
};

// Without the superuser's right to write everywhere.
class OrdinaryUser {
public:
    OrdinaryUser()
    {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0)
            ::seteuid(nobody);
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() { ::seteuid(::getuid()); }
};

} // namespace

TEST_F(InterruptionTest, ACancelLeavesWhatIsVerifiedAndNothingElse)
{
    stallInTheMiddle();
    Download download(hub, Download::Transport::application);
    PlatformSupport::BlockingPool pool(1);
    const auto task
        = PlatformSupport::startTask(pool.executor(), [&] { return download.store().download(download.spec(), {}); });
    waitForTheMiddle(download);
    task.cancel();
    EXPECT_THROW(
        (void)PlatformSupport::blockingValue([&] { return task.value(); }), PlatformSupport::CancellationError);
    EXPECT_EQ(download.onDisk(), "weights/a.bin");

    hub.clear();
    EXPECT_EQ(download.attempt(), "complete");
    EXPECT_EQ(download.fetched(), Download::size - 100'000);
}

TEST_F(InterruptionTest, AKilledProgramLeavesAFileThatTheNextOneClearsAway)
{
    stallInTheMiddle();
    Download download(hub, Download::Transport::application);
    const std::string folder = download.folder().path();
    std::vector<const char*> words { FETCH_MODEL, hub.origin().c_str(), folder.c_str(), "owner/name", "v1" };
    for (const std::string& file : download.spec().files)
        words.push_back(file.c_str());
    words.push_back(nullptr);
    pid_t process = 0;
    ASSERT_EQ(::posix_spawn(&process, words[0], nullptr, nullptr, const_cast<char* const*>(words.data()), environ), 0);
    waitForTheMiddle(download);
    ::kill(process, SIGKILL);
    int status = 0;
    ::waitpid(process, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(bytesOnTheirWay(download), 200'000);
    EXPECT_FALSE(download.store().isDownloaded(download.spec()));

    hub.clear();
    EXPECT_EQ(download.attempt(), "complete");
    EXPECT_EQ(download.fetched(), Download::size - 100'000);
    EXPECT_EQ(download.onDisk(), ".trw-meta/manifest, meta.json, weights/a.bin, weights/b.bin");
}

TEST_F(InterruptionTest, AFullDiskIsNamed)
{
    Download download(hub, Download::Transport::application);
    {
        const TestSupport::FileSizeLimit limit(200'000);
        EXPECT_EQ(download.attempt(), "The download could not be saved: File too large.");
    }
    EXPECT_EQ(download.onDisk(), "weights/a.bin");
    EXPECT_EQ(download.attempt(), "complete");
    EXPECT_EQ(download.fetched(), Download::size - 100'000);
}

TEST_F(InterruptionTest, AFolderThatCannotBeWrittenIsNamed)
{
    Download download(hub, Download::Transport::application);
    ::chmod(download.folder().path().c_str(), 0555);
    {
        const OrdinaryUser user;
        EXPECT_EQ(download.attempt(),
            "The folder “<caches>/tarnwick-models/owner/name/v1” could not be made: Permission denied.");
    }
    EXPECT_TRUE(hub.log().empty());
    ::chmod(download.folder().path().c_str(), 0755);
    EXPECT_EQ(download.attempt(), "complete");
}

TEST_F(InterruptionTest, AFileThatWasDamagedIsRepairedAlone)
{
    Download download(hub, Download::Transport::application);
    EXPECT_EQ(download.attempt(), "complete");
    EXPECT_EQ(download.fetched(), Download::size);
    EXPECT_EQ(download.attempt(), "complete");
    EXPECT_EQ(download.fetched(), 0);
    std::ofstream(download.store().location(download.spec()) + "/weights/b.bin") << "damaged";
    EXPECT_EQ(download.attempt(), "complete");
    EXPECT_EQ(download.fetched(), Download::size - 100'000); // the damaged one, and the one without a digest
}

TEST(SecureHub, IsReachedOnlyWithACertificateThatIsTrusted)
{
    const TestHub hub(TestHub::Scheme::https);
    Download::publish(hub);
    Download trusting(hub, Download::Transport::application);
    EXPECT_EQ(trusting.attempt(), "complete");
    Download downgraded(hub, Download::Transport::application);
    hub.play(R"({"on": "resolve/weights/b.bin", "fault": "redirect", "to": "http"})");
    EXPECT_EQ(downgraded.attempt(), "The server wants to go on over a connection that is not secure.");
    EXPECT_EQ(downgraded.onDisk(), "weights/a.bin");
}
