// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "HistoryTesting.h"

#include <gmock/gmock.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <map>

using namespace Sorvane;

namespace fs = std::filesystem;

namespace {

// Runs the action in a child process, which is killed on its way into or out of a system call: the one at `place` in
// its order. Returns whether the child came to that place before it was done.
bool runKilledAt(size_t place, const std::function<void()>& action)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        ::raise(SIGSTOP);
        action();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    for (size_t stops = 0; WIFSTOPPED(status); ++stops) {
        if (stops > place) {
            ::kill(child, SIGKILL);
            ::waitpid(child, &status, 0);
            return true;
        }
        ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        ::waitpid(child, &status, 0);
    }
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the child could not run";
    return false;
}

// In memory where there is such a place, since the history is made and opened some hundred times.
fs::path quickestFolder()
{
    return fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path();
}

// A history that is brought into the same state again and again, to be killed in the middle of the same operation.
class Interruption : public testing::Test {
protected:
    // Kills the operation everywhere, and looks at what the next start of the program finds. Returns how many texts
    // were found how often.
    std::map<std::string, int> outcomes(const std::function<void(TranscriptHistory&)>& operation)
    {
        std::map<std::string, int> outcomes;
        for (size_t place = 0;; ++place) {
            const TemporaryFolder folder(quickestFolder());
            NumberedUUIDs uuids;
            TranscriptHistory history(folder.path(), uuids);
            history.save(transcript("old words", 1));
            history.save(transcript("other", 2));
            const bool isInterrupted = runKilledAt(place, [&] { operation(history); });
            ++outcomes[found(folder)];
            if (!isInterrupted)
                return outcomes;
        }
    }

private:
    // The texts, and the words counted, as the program finds them when it starts again.
    static std::string found(const TemporaryFolder& folder)
    {
        NumberedUUIDs uuids(100);
        const TranscriptHistory again(folder.path(), uuids);
        EXPECT_EQ(again.errorMessage(), std::nullopt);
        EXPECT_EQ(folder.names().size(), again.entries().size() + 1) << "something is left behind";
        std::string found = texts(again.entries());
        return found + std::to_string(again.lifetimeSummary().value().words) + " words";
    }
};

using testing::Gt;
using testing::Pair;
using testing::UnorderedElementsAre;

// Fewer stops than there are between a file's opening and its renaming would mean that the kills missed the writing.
constexpr int some = 5;

} // namespace

TEST_F(Interruption, OfASaveLeavesTheNewTranscriptOrNone)
{
    EXPECT_THAT(outcomes([](auto& history) { history.save(transcript("three new words", 3)); }),
        UnorderedElementsAre(
            Pair("other\nold words\n3 words", Gt(some)), Pair("three new words\nother\nold words\n6 words", Gt(some))));
}

TEST_F(Interruption, OfACleanupLeavesTheOldTextOrTheNew)
{
    EXPECT_THAT(outcomes([](auto& history) { history.applyCleanup("Old.", numberedUUID(1)); }),
        UnorderedElementsAre(Pair("other\nold words\n3 words", Gt(some)), Pair("other\nOld.\n2 words", Gt(some))));
}

TEST_F(Interruption, OfADeletionLosesNoCount)
{
    EXPECT_THAT(outcomes([](auto& history) {
        history.deleteEntries({ history.entries().begin(), history.entries().end() });
    }),
        UnorderedElementsAre(
            Pair("other\nold words\n3 words", Gt(some)), Pair("old words\n3 words", Gt(0)), Pair("3 words", Gt(0))));
}

TEST_F(Interruption, OfAnOpeningLosesNothing)
{
    EXPECT_THAT(outcomes([](auto& history) {
        fs::remove(history.directory() / ".lifetime-statistics.json");
        NumberedUUIDs uuids;
        const TranscriptHistory another(history.directory(), uuids);
    }),
        UnorderedElementsAre(Pair("other\nold words\n3 words", Gt(some))));
}
