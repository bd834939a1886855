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

TEST(CommandLine, ChecksWhatItIsAskedToCheck)
{
    EXPECT_EQ(parse({ "--evaluate-cleanup", "a.json" }), Command(EvaluateCleanupCommand { "a.json" }));
    EXPECT_EQ(parse({ "--check-cleanup" }), Command(CheckCleanupCommand {}));
    EXPECT_EQ(parse({ "--check-first-run" }), Command(CheckFirstRunCommand {}));
    EXPECT_EQ(parse({ "--check-preparation-cache" }), Command(CheckPreparationCacheCommand {}));
    EXPECT_EQ(parse({ "--check-focus" }), Command(CheckFocusCommand {}));
    EXPECT_EQ(parse({ "--check-recording" }), Command(CheckRecordingCommand {}));
}

TEST(CommandLine, DictatesWhereACheckHasAnotherForm)
{
    const std::vector<std::vector<std::string>> others { { "--evaluate-cleanup" }, { "--evaluate-cleanup", "a", "b" },
        { "--check-cleanup", "a" }, { "--check-first-run", "a" }, { "--check-preparation-cache", "--check-first-run" },
        { "--check-focus", "" }, { "--check-recording", "--check-recording" } };
    for (const auto& arguments : others)
        EXPECT_EQ(parse(arguments), Command(DictateCommand {}));
}

TEST(CommandLine, ComplainsAboutWhatItDoesNotKnow)
{
    const std::vector<std::vector<std::string>> wrong { { "--transcribe" }, { "--transcribe", "a", "b" },
        { "--transcribe", "a", "--format", "doc" }, { "--transcribe", "a", "--format" }, { "a", "--transcribe" },
        { "a", "--check-first-run" }, { "--help", "more" }, { "" } };
    for (const auto& arguments : wrong)
        EXPECT_TRUE(std::holds_alternative<UsageError>(parse(arguments)));
}

TEST(CommandLine, KnowsHelpAndVersion)
{
    EXPECT_EQ(parse({ "--help" }), Command(HelpCommand {}));
    EXPECT_EQ(parse({ "--version" }), Command(VersionCommand {}));
    EXPECT_NE(helpText().find("--transcribe FILE"), std::string::npos);
}
