// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <MLProgram/MLModelConfiguration.h>
#include <ModelStore/DownloadProgress.h>
#include <ModelStore/ModelDistribution.h>
#include <Ostrel/AudioStream.h>
#include <Ostrel/Pipeline.h>
#include <Ostrel/Progress.h>
#include <Ostrel/Result.h>
#include <PlatformSupport/Awaitable.h>

#include <array>
#include <filesystem>
#include <mutex>
#include <span>
#include <string>
#include <string_view>

namespace Ostrel {

// The speech engine: made once from a model, after which audio goes in and timed words come out.
//
// Any thread may call it. Its operations run one at a time: a second transcription waits for the first. Each runs
// to its end on the calling thread, and a failed one leaves the engine usable. `progress` is called on that
// thread while the call runs, last with 1.0 on success; it must be quick and must not call the engine.
//
// Errors of all transcriptions: OstrelError invalidAudio, and what a stage throws, passed on.
class Ostrel {
public:
    static constexpr std::array<std::string_view, 25> supportedLanguages { "bg", "cs", "da", "de", "el", "en", "es",
        "et", "fi", "fr", "hr", "hu", "it", "lt", "lv", "mt", "nl", "pl", "pt", "ro", "ru", "sk", "sl", "sv", "uk" };

    // Loads the model in a directory; this takes as long as its stages need to be compiled.
    // Errors: those of Assets::load() and Pipeline
    explicit Ostrel(const std::filesystem::path& modelDirectory,
        MLProgram::MLComputeUnits computeUnits = MLProgram::MLComputeUnits::cpuAndNeuralEngine);

    // Finds the model on this computer, or downloads it, and loads it; the calling thread waits for all of that.
    // Errors: OstrelError unsupportedPlatform; those of ModelStore::download(); as above
    explicit Ostrel(const ModelStore::ModelPlace& place, const ModelStore::DownloadProgressCallback& progress = {});

    explicit Ostrel(Assets assets, const Tunables& tunables = Tunables::process());

    // Whether the model is on this computer, complete. Reads all of it.
    static bool isDownloaded(const ModelStore::ModelPlace& place);

    // Finds the model on this computer, or downloads it, and gives its directory. Hashes on the awaiting task's
    // executor. Errors: those of ModelStore::download()
    static PlatformSupport::Awaitable<std::string> download(
        ModelStore::ModelPlace place, ModelStore::DownloadProgressCallback progress = {});

    double sampleRate() const noexcept { return sampleRate_; } // the model's, Hz

    // The audio of a file of any usual container.
    Result transcribe(const std::filesystem::path& path, const ProgressCallback& progress = {});

    // One channel of samples, at the model's rate or at another.
    Result transcribe(std::span<const float> samples, const ProgressCallback& progress = {});
    Result transcribe(std::span<const float> samples, double sampleRate, const ProgressCallback& progress = {});

    // `duration` is the audio's length in seconds, as far as it is known; words are cut at it.
    Result transcribe(AudioStream& stream, double duration, const ProgressCallback& progress = {});

private:
    Result recognize(AudioStream& stream, double duration, const ProgressCallback& progress);

    double sampleRate_;
    Pipeline pipeline_;
    std::mutex turn_; // held by the operation that runs
};

} // namespace Ostrel
