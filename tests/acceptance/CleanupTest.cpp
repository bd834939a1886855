// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Program.h"

#include <Sorvane/CleanupFiles.h>

#include <CleanupStandIns.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace {

// The stand-ins for both tools, installed for a user of the test's own.
class CleanupAcceptance : public testing::Test {
protected:
    CleanupAcceptance()
    {
        TestSupport::installCleanupStandIns(files);
        fs::create_directory(folder / "tmp");
    }

    Outcome run(const std::vector<std::string>& arguments) const
    {
        return runSorvane(arguments, { { "XDG_DATA_HOME", folder / "data" }, { "TMPDIR", folder / "tmp" } });
    }

    Outcome evaluate(const std::string& json) const
    {
        std::ofstream(folder / "texts.json") << json;
        return run({ "--evaluate-cleanup", folder / "texts.json" });
    }

    static void setCase(const fs::path& tool, const std::string& text)
    {
        std::ofstream(tool.string() + ".case") << text;
    }

    TemporaryFolder folder;
    Sorvane::CleanupFiles files { folder / "data/Sorvane/Cleanup/S1-mini-Q4" };
};

std::vector<nlohmann::json> rowsIn(const std::string& output)
{
    std::vector<nlohmann::json> rows;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);)
        rows.push_back(nlohmann::json::parse(line));
    return rows;
}

} // namespace

TEST_F(CleanupAcceptance, ChecksTheInstalledModel)
{
    const auto outcome = run({ "--check-cleanup" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output,
        "PASS: installed local cleanup runtime edited synthetic dictation. No audio recorded or text inserted.\n");
    EXPECT_EQ(outcome.errors, "");
    EXPECT_TRUE(fs::is_empty(folder / "tmp"));
}

TEST_F(CleanupAcceptance, ShowsWhatAnUnusableModelSaid)
{
    setCase(files.generator(), "print\nI cannot stop");
    const auto outcome = run({ "--check-cleanup" });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "Synthetic model response: I cannot stop\n");
    EXPECT_THAT(outcome.errors, MatchesRegex("Cleanup check failed: [^\n]+\n"));
}

TEST_F(CleanupAcceptance, SaysThatThereIsNoModel)
{
    fs::remove(files.weights());
    const auto outcome = run({ "--check-cleanup" });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "Cleanup check failed: the cleanup model is not installed\n");
}

TEST_F(CleanupAcceptance, TidiesEachTextInItsMode)
{
    const auto outcome = evaluate(R"([
        { "input": "um, call Ann tomorrow" },
        { "mode": "email" },
        { "input": "uh dear Ann", "mode": "email" },
        { "input": "um as it is", "mode": "raw" },
        { "input": "um", "mode": "sonnet" },
        { "input": "Nothing to do.", "note": "skipped" }
    ])");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    auto rows = rowsIn(outcome.output);
    ASSERT_EQ(rows.size(), 5u);
    for (auto& row : rows) {
        EXPECT_THAT(row["seconds"].get<std::string>(), MatchesRegex("[0-9]+\\.[0-9]{3}"));
        row.erase("seconds");
    }
    using Json = nlohmann::json;
    const auto expected = [](const char* input, const char* mode, const char* text, const char* usedOriginal) {
        return Json { { "input", input }, { "mode", mode }, { "output", text }, { "usedOriginal", usedOriginal } };
    };
    EXPECT_EQ(rows[0], expected("um, call Ann tomorrow", "clean", "Call Ann tomorrow.", "false"));
    EXPECT_EQ(rows[1], expected("uh dear Ann", "email", "Dear Ann.", "false"));
    EXPECT_EQ(rows[2], expected("um as it is", "raw", "um as it is", "true"));
    EXPECT_EQ(rows[3], expected("um", "clean", "", "false"));
    EXPECT_EQ(rows[4], expected("Nothing to do.", "clean", "Nothing to do.", "true"));
}

TEST_F(CleanupAcceptance, SaysWhyATextIsTheOriginal)
{
    setCase(files.generator(), "exit 1");
    const auto outcome = evaluate(R"([{ "input": "um hello" }])");
    EXPECT_EQ(outcome.status, 0);
    const auto rows = rowsIn(outcome.output);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0]["output"], "um hello");
    EXPECT_EQ(rows[0]["usedOriginal"], "true");
    EXPECT_EQ(rows[0]["error"], "Original used: cleanup was unavailable or returned no usable result.");
}

TEST_F(CleanupAcceptance, EvaluatesNothingWithoutAWord)
{
    const auto empty = evaluate("[]");
    EXPECT_EQ(empty.status, 0);
    EXPECT_EQ(empty.output, "");
    for (const std::string wrong :
        { "", "{}", "[1]", "[{\"input\": 1}]", "[{\"input\": \"a\"}", "[{\"input\": null}]" }) {
        const auto outcome = evaluate(wrong);
        EXPECT_EQ(outcome.status, 1) << wrong;
        EXPECT_EQ(outcome.output + outcome.errors, "") << wrong;
    }
    EXPECT_EQ(run({ "--evaluate-cleanup", folder / "missing.json" }).status, 1);
}

TEST_F(CleanupAcceptance, ShowsNoWordOfATextToOtherUsers)
{
    setCase(files.generator(), "die");
    const auto outcome = evaluate(R"([{ "input": "um, confidential takeover" }])");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    for (const auto& tool : { files.tokeniser(), files.generator() }) {
        std::ostringstream record; // with arguments, environment and /proc/self/cmdline
        record << std::ifstream(tool.string() + ".record").rdbuf();
        EXPECT_THAT(record.str(), StartsWith("{"));
        EXPECT_THAT(record.str(), Not(HasSubstr("confidential")));
    }
    EXPECT_TRUE(fs::is_empty(folder / "tmp"));
}
