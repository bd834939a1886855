// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CommandLine.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Sorvane;

namespace {

Command parse(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "sorvane");
    return parseCommandLine(arguments);
}

} // namespace

TEST(CommandLine, DictatesWithoutArguments)
{
    EXPECT_EQ(parse({}), Command(DictateCommand {}));
}

TEST(CommandLine, TranscribesOneFile)
{
    EXPECT_EQ(parse({ "--transcribe", "a.wav" }), Command(TranscribeCommand { "a.wav" }));
    EXPECT_EQ(parse({ "--transcribe", "--format" }), Command(TranscribeCommand { "--format" }));
}

TEST(CommandLine, TakesAFormatAfterTheFile)
{
    EXPECT_EQ(parse({ "--transcribe", "a.wav", "--format", "srt" }),
        Command(TranscribeCommand { "a.wav", TranscriptFormat::srt }));
    EXPECT_EQ(parse({ "--transcribe", "a.wav", "--format", "json" }),
        Command(TranscribeCommand { "a.wav", TranscriptFormat::json }));
}

TEST(CommandLine, ChecksTheCleanupOnlyInTheExactForm)
{
    EXPECT_EQ(parse({ "--evaluate-cleanup", "a.json" }), Command(EvaluateCleanupCommand { "a.json" }));
    EXPECT_EQ(parse({ "--check-cleanup" }), Command(CheckCleanupCommand {}));
    const std::vector<std::vector<std::string>> wrong { { "--evaluate-cleanup" }, { "--evaluate-cleanup", "a", "b" },
        { "--check-cleanup", "a" } };
    for (const auto& arguments : wrong)
        EXPECT_TRUE(std::holds_alternative<UsageError>(parse(arguments)));
}

TEST(CommandLine, ChecksThePreparationOnlyInTheExactForm)
{
    EXPECT_EQ(parse({ "--check-first-run" }), Command(CheckFirstRunCommand {}));
    EXPECT_EQ(parse({ "--check-preparation-cache" }), Command(CheckPreparationCacheCommand {}));
    const std::vector<std::vector<std::string>> wrong { { "--check-first-run", "a" },
        { "--check-preparation-cache", "--check-first-run" }, { "a", "--check-first-run" } };
    for (const auto& arguments : wrong)
        EXPECT_TRUE(std::holds_alternative<UsageError>(parse(arguments)));
}

TEST(CommandLine, ComplainsAboutWhatItDoesNotKnow)
{
    const std::vector<std::vector<std::string>> wrong { { "--transcribe" }, { "--transcribe", "a", "b" },
        { "--transcribe", "a", "--format", "doc" }, { "--transcribe", "a", "--format" }, { "a", "--transcribe" },
        { "--help", "more" }, { "" } };
    for (const auto& arguments : wrong)
        EXPECT_TRUE(std::holds_alternative<UsageError>(parse(arguments)));
}

TEST(CommandLine, KnowsHelpAndVersion)
{
    EXPECT_EQ(parse({ "--help" }), Command(HelpCommand {}));
    EXPECT_EQ(parse({ "--version" }), Command(VersionCommand {}));
    EXPECT_NE(helpText().find("--transcribe FILE"), std::string::npos);
}
