// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Program.h"
#include "WordErrors.h"

#include <AudioIO/WAV.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

std::string writeWav(const fs::path& path, const std::vector<float>& samples)
{
    const auto bytes = AudioIO::WAV::encode(samples, 16000, 1);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return path;
}

std::string contents(const fs::path& path)
{
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

// Recordings of samples/ with the text that was spoken.
std::vector<std::pair<fs::path, std::string>> samples()
{
    std::vector<std::pair<fs::path, std::string>> all;
    for (const auto& entry : fs::directory_iterator(SAMPLES_DIRECTORY)) {
        const auto reference = fs::path(entry.path()).replace_extension(".txt");
        if (entry.path().extension() != ".txt" && entry.path().extension() != ".md" && fs::exists(reference))
            all.emplace_back(entry.path(), contents(reference));
    }
    std::ranges::sort(all);
    return all;
}

std::string firstLine(const std::string& text)
{
    return text.substr(0, text.find('\n'));
}

} // namespace

TEST(Transcribe, RecognisesTheSamples)
{
    size_t words = 0;
    size_t errors = 0;
    for (const auto& [recording, reference] : samples()) {
        const auto outcome = runSorvane({ "--transcribe", recording });
        ASSERT_EQ(outcome.status, 0) << recording << outcome.errors;
        const auto said = spokenWords(reference);
        const auto wrong = wordErrors(said, spokenWords(firstLine(outcome.output)));
        EXPECT_LE(wrong * 2, said.size()) << recording << ": " << outcome.output;
        words += said.size();
        errors += wrong;
    }
    ASSERT_GT(words, 0u);
    EXPECT_LE(static_cast<double>(errors) / static_cast<double>(words), 0.1);
}

TEST(Transcribe, PrintsTheTextAndTheLengths)
{
    const auto outcome = runSorvane({ "--transcribe", SAMPLES_DIRECTORY "/shopping-list.wav" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(
        outcome.output, testing::MatchesRegex("[^\n]+\n[0-9]+\\.[0-9]{2}s audio, [0-9]+\\.[0-9]{2}s processing\n"));
}

TEST(Transcribe, GivesWordTimesAsJson)
{
    const auto outcome = runSorvane({ "--transcribe", SAMPLES_DIRECTORY "/shopping-list.wav", "--format", "json" });
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    const auto document = nlohmann::json::parse(outcome.output);
    std::string joined;
    double previous = 0;
    for (const auto& word : document["words"]) {
        joined += (joined.empty() ? "" : " ") + word["text"].get<std::string>();
        EXPECT_GE(word["start"].get<double>(), previous);
        EXPECT_LE(word["end"].get<double>(), document["duration"].get<double>());
        previous = word["start"];
    }
    EXPECT_EQ(joined, document["text"].get<std::string>());
}

TEST(Transcribe, SilenceIsNoError)
{
    const TemporaryFolder folder;
    const auto file = writeWav(folder / "silence.wav", std::vector<float>(30 * 16000));
    const auto outcome = runSorvane({ "--transcribe", file });
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(firstLine(outcome.output), "");
    EXPECT_TRUE(outcome.output.starts_with("\n30.00s audio, ")) << outcome.output;
}

TEST(Transcribe, TakesRecordingsOfAFewSamples)
{
    const TemporaryFolder folder;
    for (const size_t count : { 1, 4 }) {
        const auto file = writeWav(folder / "short.wav", std::vector<float>(count, 0.25f));
        const auto outcome = runSorvane({ "--transcribe", file });
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_TRUE(outcome.output.starts_with("\n0.00s audio, ")) << outcome.output;
    }
}

TEST(Transcribe, SaysWhatIsWrongWithAFile)
{
    const TemporaryFolder folder;
    const auto expectFailure = [&](const std::string& path, const std::string& text) {
        const auto outcome = runSorvane({ "--transcribe", path });
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.output, "");
        EXPECT_TRUE(outcome.errors.starts_with("Transcription failed: invalid audio: " + path + text))
            << outcome.errors;
        EXPECT_TRUE(outcome.errors.ends_with("\n"));
    };
    expectFailure(folder / "missing.wav", ": ");
    expectFailure(folder / ".", ": ");
    expectFailure(writeWav(folder / "none.wav", {}), " decoded to no audio");
    std::ofstream(folder / "empty.wav").close();
    expectFailure(folder / "empty.wav", ": ");
    std::ofstream(folder / "letter.txt") << "Dear Ann, this is no sound at all.\n";
    expectFailure(folder / "letter.txt", ": ");
}

TEST(Transcribe, SaysThatAModelCannotBeHad)
{
    const TemporaryFolder folder;
    const auto outcome = runSorvane({ "--transcribe", SAMPLES_DIRECTORY "/shopping-list.wav" },
        { { "OSTREL_MODEL_DIRECTORY", (folder / "").string() }, { "TRW_HUB_ENDPOINT", "http://127.0.0.1:1" } });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "Transcription failed: The server could not be reached.\n");
}

TEST(CommandLine, HelpsAndRefuses)
{
    EXPECT_EQ(runSorvane({ "--help" }).status, 0);
    EXPECT_TRUE(runSorvane({ "--version" }).output.starts_with("sorvane "));
    const auto refused = runSorvane({ "--transcribe", "a", "b" });
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.output, "");
    EXPECT_NE(refused.errors, "");
}
