// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CleanupTestbed.h"

#include <PlatformSupport/SystemClock.h>

#include <FileSizeLimit.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <fstream>

namespace Sorvane {

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

namespace {

constexpr auto processFailed = CleanupFailure::Case::processFailed;

// One and the same.
class RepeatedUUID final : public PlatformSupport::UUIDSource {
public:
    PlatformSupport::UUID next() override { return {}; }
};

// Time passes by itself; no test here waits for it.
class CleanupProcessTest : public testing::Test {
protected:
    PlatformSupport::SystemClock clock;
    ProcessTestbed testbed { clock };
    std::filesystem::path tool = testbed.files().generator();

    std::vector<std::string> argumentsSeen() const { return testbed.record(tool)["arguments"]; }
};

} // namespace

TEST_F(CleanupProcessTest, GivesWhatTheToolWrote)
{
    testbed.setCase(tool, "print\nHello, wörld.<|im_end|> [end of text]\n\n\n");
    EXPECT_EQ(testbed.run(testbed.generator()), "Hello, wörld.<|im_end|> [end of text]\n\n\n");
    testbed.setCase(tool, "print\n");
    EXPECT_EQ(testbed.run(testbed.generator()), "");
}

TEST_F(CleanupProcessTest, RunsTheGeneratorUnlessToldOtherwise)
{
    testbed.run(testbed.generator());
    auto arguments = argumentsSeen();
    ASSERT_FALSE(arguments.empty());
    EXPECT_EQ(arguments.back(), testbed.record(tool)["directory"].get<std::string>() + "/prompt.txt");
    arguments.pop_back();
    EXPECT_THAT(arguments,
        ElementsAre("--model", testbed.files().weights().string(), "--ctx-size", "4096", "--n-predict", "1332",
            "--temp", "0", "--seed", "42", "--threads", "4", "--offline", "--no-escape", "--no-conversation",
            "--no-display-prompt", "--simple-io", "--no-warmup", "--special", "--no-context-shift", "--binary-file"));
}

TEST_F(CleanupProcessTest, PassesArgumentsAsTheyAre)
{
    auto invocation = testbed.generator();
    invocation.arguments = { "a b", "", "$HOME", "\"'\\", "*" };
    invocation.promptOption = CleanupProcess::PromptOption::leaveOut;
    testbed.setCase(tool, "print\n");
    testbed.run(invocation);
    EXPECT_THAT(argumentsSeen(), ElementsAre("a b", "", "$HOME", "\"'\\", "*"));
}

TEST_F(CleanupProcessTest, WritesThePromptEvenWhereNoOptionNamesIt)
{
    auto invocation = testbed.generator();
    invocation.promptOption = CleanupProcess::PromptOption::leaveOut;
    testbed.setCase(tool, "print\n");
    testbed.run(invocation);
    EXPECT_THAT(argumentsSeen(), testing::Not(testing::Contains("--binary-file")));
    EXPECT_EQ(testbed.record(tool)["modes"], (nlohmann::json { { "prompt.txt", 0600 } }));
}

TEST_F(CleanupProcessTest, KeepsThePromptToTheByteInAFileOfItsOwn)
{
    const std::string prompt("zero \0 CR \r\n tab\t \\n <|im_start|> \xFF end\n"sv);
    testbed.setCase(tool, "print\n");
    testbed.run(testbed.generator(prompt));
    EXPECT_EQ(testbed.prompt(tool), prompt);
    EXPECT_EQ(testbed.record(tool)["modes"], (nlohmann::json { { "prompt.txt", 0600 } }));
    EXPECT_EQ(testbed.record(tool)["directoryMode"], 0700);
}

TEST_F(CleanupProcessTest, KeepsItsModesWhateverTheProcessMasks)
{
    const mode_t previous = ::umask(0577);
    testbed.run(testbed.generator());
    ::umask(previous);
    EXPECT_EQ(testbed.record(tool)["modes"], (nlohmann::json { { "prompt.txt", 0600 } }));
    EXPECT_EQ(testbed.record(tool)["directoryMode"], 0700);
}

TEST_F(CleanupProcessTest, WorksInAPrivateDirectoryOfItsName)
{
    testbed.run(testbed.generator());
    const std::filesystem::path directory = testbed.record(tool)["directory"].get<std::string>();
    EXPECT_EQ(directory.parent_path(), testbed.folders().temporary);
    EXPECT_THAT(directory.filename().string(),
        MatchesRegex("sorvane-cleanup-[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
}

TEST_F(CleanupProcessTest, PassesOnThreeVariablesAndNoMore)
{
    testbed.run(testbed.generator());
    EXPECT_THAT(testbed.record(tool)["environment"],
        ElementsAre("PATH=/usr/bin:/bin", "HOME=" + testbed.folders().home.string(), "LC_ALL=en_US.UTF-8"));
}

TEST_F(CleanupProcessTest, ShowsNoWordOfThePromptToOtherUsers)
{
    testbed.run(testbed.generator("confidential takeover"));
    EXPECT_EQ(testbed.prompt(tool), "confidential takeover");
    const std::string commandLine = testbed.record(tool)["commandLine"];
    EXPECT_THAT(commandLine, testing::StartsWith(tool.string()));
    EXPECT_THAT(commandLine, testing::Not(testing::HasSubstr("confidential")));
    EXPECT_THAT(testbed.record(tool)["environment"].dump(), testing::Not(testing::HasSubstr("takeover")));
}

TEST_F(CleanupProcessTest, StartsTheToolWithNothingOfThisProcess)
{
    std::array<int, 2> inheritable {}; // as a library may have left it open
    ASSERT_EQ(::pipe(inheritable.data()), 0);
    std::ignore = ::signal(SIGPIPE, SIG_IGN);
    testbed.run(testbed.generator());
    std::ignore = ::signal(SIGPIPE, SIG_DFL);
    ::close(inheritable[0]);
    ::close(inheritable[1]);

    const auto record = testbed.record(tool);
    EXPECT_EQ(record["files"].size(), 3u) << record["files"];
    EXPECT_EQ(record["files"]["0"], "/dev/null");
    EXPECT_THAT(record["files"]["1"].get<std::string>(), testing::StartsWith("pipe:"));
    EXPECT_EQ(record["files"]["2"], "/dev/null");
    EXPECT_EQ(record["blockedSignals"], "0000000000000000");
    EXPECT_EQ(record["ignoredSignals"], "0000000000000000");
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int coreLimit = 0; // what the sanitizer in the tool makes of any limit
#else
constexpr int coreLimit = 1; // byte: not even for a program that the system pipes cores to
#endif

TEST_F(CleanupProcessTest, LeavesTheToolNoWayToOutliveIt)
{
    testbed.run(testbed.generator());
    const auto record = testbed.record(tool);
    EXPECT_EQ(record["group"], record["process"]);
    EXPECT_EQ(record["deathSignal"], SIGKILL);
    EXPECT_EQ(record["coreLimit"], coreLimit);
}

TEST_F(CleanupProcessTest, FailsWhereTheToolFails)
{
    for (const std::string ending : { "exit 1\n", "exit 127\n", "exit 255\nsome text", "die\nsome text" }) {
        testbed.setCase(tool, ending);
        EXPECT_EQ(failureOf([&] { testbed.run(testbed.generator()); }), processFailed) << ending;
        EXPECT_THAT(testbed.temporaryFiles(), IsEmpty());
    }
}

TEST_F(CleanupProcessTest, RefusesBytesThatAreNoText)
{
    for (const std::string bytes : { "\xFF", "cut \xE2\x82", "\xED\xA0\x80<|im_end|>" }) {
        testbed.setCase(tool, "print\n" + bytes);
        EXPECT_EQ(failureOf([&] { testbed.run(testbed.generator()); }), processFailed);
    }
}

TEST_F(CleanupProcessTest, TakesMoreThanAPipeHolds)
{
    const std::string kilobyte = std::string(1023, 'x') + "\n";
    testbed.setCase(tool, "print-often 1024\n" + kilobyte);
    EXPECT_EQ(testbed.run(testbed.generator()).size(), size_t { 1024 } * 1024);
}

TEST_F(CleanupProcessTest, EndsAToolThatWritesWithoutEnd)
{
    testbed.setCase(tool, "flood\n" + std::string(60'000, 'x'));
    EXPECT_EQ(failureOf([&] { testbed.run(testbed.generator()); }), processFailed);
    EXPECT_THAT(testbed.temporaryFiles(), IsEmpty());
}

TEST_F(CleanupProcessTest, PassesOnWhyAToolCannotBeStarted)
{
    auto invocation = testbed.generator();
    invocation.executable = testbed.files().directory / "missing";
    try {
        testbed.run(invocation);
        FAIL() << "started";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
        EXPECT_THAT(error.what(), testing::StartsWith("cannot start " + invocation.executable.string()));
    }
    EXPECT_THAT(testbed.temporaryFiles(), IsEmpty());
}

TEST_F(CleanupProcessTest, PassesOnWhyThereIsNoPrivateDirectory)
{
    std::filesystem::remove(testbed.folders().temporary);
    EXPECT_THROW(testbed.run(testbed.generator()), std::filesystem::filesystem_error);
    EXPECT_FALSE(std::filesystem::exists(testbed.folders().temporary)); // parents are not created
    EXPECT_FALSE(testbed.hasRun(tool));
}

TEST_F(CleanupProcessTest, LeavesAloneWhatHasTheNameOfThePrivateDirectory)
{
    RepeatedUUID uuids;
    CleanupProcess process(clock, uuids, testbed.folders());
    const auto taken = testbed.folders().temporary / "sorvane-cleanup-00000000-0000-0000-0000-000000000000";
    const auto expectRefused = [&] {
        const auto run = PlatformSupport::startDetachedTask(
            testbed.loop.executor(), [&] { return process.run(testbed.generator()); });
        EXPECT_THROW(testbed.loop.finish(run), std::filesystem::filesystem_error);
        EXPECT_FALSE(testbed.hasRun(tool));
    };
    std::filesystem::create_directory(taken);
    std::ofstream(taken / "file").close();
    expectRefused();
    EXPECT_TRUE(std::filesystem::exists(taken / "file"));
    std::filesystem::rename(taken, testbed.folders().home / "elsewhere");
    std::filesystem::create_directory_symlink(testbed.folders().home / "elsewhere", taken);
    expectRefused();
    EXPECT_TRUE(std::filesystem::exists(taken / "file"));
}

TEST_F(CleanupProcessTest, FailsWhereThePromptFindsNoRoom)
{
    const TestSupport::FileSizeLimit limit(1'000);
    EXPECT_EQ(failureOf([&] { testbed.run(testbed.generator(std::string(1'001, 'x'))); }), processFailed);
    EXPECT_FALSE(testbed.hasRun(tool));
    EXPECT_THAT(testbed.temporaryFiles(), IsEmpty());
}

TEST_F(CleanupProcessTest, RunsToolsSideBySide)
{
    constexpr size_t count = 8;
    std::vector<PlatformSupport::Task<std::string>> runs;
    runs.reserve(count);
    while (runs.size() < count)
        runs.push_back(testbed.start(testbed.generator("word")));
    for (const auto& run : runs)
        EXPECT_EQ(testbed.loop.finish(run), "Word.<|im_end|> [end of text]\n\n\n");
    EXPECT_THAT(testbed.temporaryFiles(), IsEmpty());
}

} // namespace Sorvane
