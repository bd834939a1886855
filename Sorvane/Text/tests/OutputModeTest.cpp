// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/CodingHarness.h>
#include <Sorvane/OutputModeSelection.h>
#include <Sorvane/TranscriptMode.h>

#include <gtest/gtest.h>

#include <string>

namespace Sorvane {
namespace {

TEST(TranscriptMode, IsStoredByItsRawValue)
{
    EXPECT_EQ(rawValue(TranscriptMode::clean), "clean");
    for (const auto mode : allTranscriptModes)
        EXPECT_EQ(transcriptMode(rawValue(mode)), mode);
}

TEST(TranscriptMode, IsNotFoundUnderAnotherSpelling)
{
    EXPECT_EQ(transcriptMode("Clean"), std::nullopt);
    EXPECT_EQ(transcriptMode("auto"), std::nullopt);
    EXPECT_EQ(transcriptMode(""), std::nullopt);
}

TEST(TranscriptMode, CallsCleanStructured)
{
    EXPECT_EQ(title(TranscriptMode::clean), "Structured");
    EXPECT_EQ(title(TranscriptMode::email), "Email");
    EXPECT_EQ(title(TranscriptMode::raw), "Raw");
}

TEST(OutputModeSelection, IsStoredByItsRawValue)
{
    EXPECT_EQ(rawValue(OutputModeSelection::automatic), "auto");
    for (const auto selection : allOutputModeSelections)
        EXPECT_EQ(outputModeSelection(rawValue(selection)), selection);
    EXPECT_EQ(outputModeSelection("automatic"), std::nullopt);
}

TEST(OutputModeSelection, SharesTheTitlesOfTheModes)
{
    EXPECT_EQ(title(OutputModeSelection::automatic), "Auto");
    EXPECT_EQ(title(OutputModeSelection::clean), "Structured");
    EXPECT_EQ(title(OutputModeSelection::email), "Email");
    EXPECT_EQ(title(OutputModeSelection::raw), "Raw");
}

TEST(OutputModeSelection, IsListedAfterTheAutomaticChoiceInTheOrderOfTheModes)
{
    std::string listed;
    for (const auto selection : allOutputModeSelections)
        listed += std::string(rawValue(selection)) + " ";
    for (const auto mode : allTranscriptModes)
        listed += std::string(rawValue(mode)) + " ";
    EXPECT_EQ(listed, "auto clean email raw clean email raw ");
}

TEST(OutputModeSelection, HasASymbolForEachCase)
{
    EXPECT_EQ(symbol(OutputModeSelection::automatic), "sparkles");
    EXPECT_EQ(symbol(OutputModeSelection::clean), "wand.and.stars");
    EXPECT_EQ(symbol(OutputModeSelection::email), "envelope");
    EXPECT_EQ(symbol(OutputModeSelection::raw), "waveform");
}

TEST(OutputModeSelection, LeavesOnlyTheAutomaticChoiceToTheDetection)
{
    EXPECT_EQ(resolved(OutputModeSelection::automatic, TranscriptMode::email), TranscriptMode::email);
    EXPECT_EQ(resolved(OutputModeSelection::clean, TranscriptMode::email), TranscriptMode::clean);
    EXPECT_EQ(resolved(OutputModeSelection::raw, TranscriptMode::email), TranscriptMode::raw);
}

TEST(CodingHarness, IsStoredByItsName)
{
    EXPECT_EQ(rawValue(CodingHarness::claudeCode), "Claude Code");
    for (const auto harness : allCodingHarnesses)
        EXPECT_EQ(codingHarness(rawValue(harness)), harness);
    EXPECT_EQ(codingHarness("claude code"), std::nullopt);
}

} // namespace
} // namespace Sorvane
