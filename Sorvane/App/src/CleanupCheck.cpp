// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CleanupCheck.h"

#include <PlatformSupport/BlockingValue.h>
#include <PlatformSupport/SystemClock.h>
#include <PlatformSupport/UUID.h>
#include <Sorvane/CleanupFailure.h>
#include <Sorvane/CleanupProcess.h>
#include <Sorvane/LinkGrammarTagger.h>
#include <Sorvane/TranscriptCleanup.h>
#include <Sorvane/TranscriptMode.h>

#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <exception>
#include <fstream>
#include <map>
#include <vector>

namespace Sorvane {

namespace {

using Row = std::map<std::string, std::string>;

// All that the model needs.
struct LocalModel {
    PlatformSupport::SystemClock clock;
    PlatformSupport::RandomUUIDs uuids;
    LinkGrammarTagger tagger;
    CleanupProcess process { clock, uuids };
    TranscriptCleanup cleanup { process, tagger };
};

std::vector<Row> rowsIn(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return nlohmann::json::parse(file).get<std::vector<Row>>();
}

TranscriptMode modeOf(const Row& row)
{
    const auto mode = row.find("mode");
    return mode == row.end() ? TranscriptMode::clean : transcriptMode(mode->second).value_or(TranscriptMode::clean);
}

CleanupResult clean(const LocalModel& model, const std::string& text, TranscriptMode mode)
{
    using Cleanup = TranscriptCleanup;
    const auto enabled = mode == TranscriptMode::raw ? Cleanup::Enabled::no : Cleanup::Enabled::yes;
    const auto context = mode == TranscriptMode::email ? Cleanup::Context::email : Cleanup::Context::general;
    return PlatformSupport::blockingValue([&] { return model.cleanup.clean(text, enabled, context); });
}

std::string secondsText(PlatformSupport::Clock::Duration duration)
{
    std::array<char, 32> text {};
    std::snprintf(text.data(), text.size(), "%.3f", std::chrono::duration<double>(duration).count());
    return text.data();
}

Row evaluated(const LocalModel& model, const std::string& input, TranscriptMode mode)
{
    const auto start = model.clock.now();
    const auto result = clean(model, input, mode);
    Row row { { "input", input }, { "mode", std::string(rawValue(mode)) }, { "output", result.text },
        { "usedOriginal", result.usedOriginal ? "true" : "false" },
        { "seconds", secondsText(model.clock.now() - start) } };
    if (result.message)
        row.emplace("error", *result.message);
    return row;
}

} // namespace

int evaluateCleanup(const EvaluateCleanupCommand& command)
{
    try {
        const LocalModel model;
        for (const Row& row : rowsIn(command.path)) {
            const auto input = row.find("input");
            if (input == row.end())
                continue;
            std::puts(nlohmann::json(evaluated(model, input->second, modeOf(row))).dump().c_str());
            std::fflush(stdout);
        }
        return 0;
    } catch (const std::exception&) {
        return 1;
    }
}

int checkCleanup()
{
    const std::string dictation = "Um, can you, can you make the labels smaller, uh, but keep the icon size?";
    try {
        LocalModel model;
        const std::string response = PlatformSupport::blockingValue([&] {
            return TranscriptCleanup::generate(dictation, TranscriptCleanup::Context::general,
                CleanupFiles::ofThisUser(), model.process, model.tagger);
        });
        const auto tidied = TranscriptCleanup::validate(response, dictation);
        if (tidied && *tidied != dictation) {
            std::puts("PASS: installed local cleanup runtime edited synthetic dictation. "
                      "No audio recorded or text inserted.");
            return 0;
        }
        const std::string said = "Synthetic model response: " + response + "\n";
        std::fwrite(said.data(), 1, said.size(), stdout); // the whole of it, whatever bytes it holds
        throw CleanupFailure(CleanupFailure::Case::invalidOutput);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "Cleanup check failed: %s\n", error.what());
    }
    return 1;
}

} // namespace Sorvane
