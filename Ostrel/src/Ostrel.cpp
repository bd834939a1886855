// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "FileAudioStream.h"

#include <AudioIO/Resample.h>
#include <Ostrel/Ostrel.h>
#include <Ostrel/OstrelError.h>
#include <Ostrel/OstrelModel.h>
#include <PlatformSupport/BlockingValue.h>

#include <algorithm>
#include <chrono>

namespace Ostrel {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double fileChunkSeconds = 10.0;

Assets storedAssets(const ModelStore::ModelPlace& place, const ModelStore::DownloadProgressCallback& progress)
{
    const OstrelModel model;
    if (!model.supports())
        throw OstrelError::unsupportedPlatform();
    const std::string directory = PlatformSupport::blockingValue([&] { return Ostrel::download(place, progress); });
    return Assets::load(directory, MLProgram::MLComputeUnits::cpuAndNeuralEngine);
}

void report(const ProgressCallback& progress, double fraction)
{
    if (progress)
        progress({ .fractionCompleted = fraction });
}

// Padding may let a word run past the audio.
void clampToDuration(std::vector<Word>& words, double duration)
{
    for (Word& word : words) {
        if (word.end <= duration)
            continue;
        word.start = std::min(word.start, duration);
        word.end = duration;
    }
}

} // namespace

Ostrel::Ostrel(const std::filesystem::path& modelDirectory, MLProgram::MLComputeUnits computeUnits)
    : Ostrel(Assets::load(modelDirectory, computeUnits))
{
}

Ostrel::Ostrel(const ModelStore::ModelPlace& place, const ModelStore::DownloadProgressCallback& progress)
    : Ostrel(storedAssets(place, progress))
{
}

Ostrel::Ostrel(Assets assets, const Tunables& tunables)
    : sampleRate_(static_cast<double>(assets.configuration.sampleRate))
    , pipeline_(std::move(assets), tunables)
{
}

bool Ostrel::isDownloaded(const ModelStore::ModelPlace& place)
{
    return OstrelModel().isAvailable(place);
}

PlatformSupport::Awaitable<std::string> Ostrel::download(
    ModelStore::ModelPlace place, ModelStore::DownloadProgressCallback progress)
{
    const ModelStore::StoredModel model = co_await OstrelModel().resolve(std::move(place), std::move(progress));
    co_return model.rootPath;
}

Result Ostrel::transcribe(const std::filesystem::path& path, const ProgressCallback& progress)
{
    const std::scoped_lock turn(turn_);
    FileAudioStream stream(path, static_cast<int64_t>(sampleRate_), fileChunkSeconds);
    const double duration = static_cast<double>(stream.totalSamples().value_or(0)) / sampleRate_;
    return recognize(stream, duration, progress);
}

Result Ostrel::transcribe(std::span<const float> samples, const ProgressCallback& progress)
{
    return transcribe(samples, sampleRate_, progress);
}

Result Ostrel::transcribe(std::span<const float> samples, double sampleRate, const ProgressCallback& progress)
{
    const std::scoped_lock turn(turn_);
    std::vector<float> resampled = AudioIO::Resample::linear(samples, sampleRate, sampleRate_);
    if (resampled.empty())
        throw OstrelError::invalidAudio("no samples");
    const double duration = static_cast<double>(resampled.size()) / sampleRate_;
    ArrayAudioStream stream(std::move(resampled));
    return recognize(stream, duration, progress);
}

Result Ostrel::transcribe(AudioStream& stream, double duration, const ProgressCallback& progress)
{
    const std::scoped_lock turn(turn_);
    return recognize(stream, duration, progress);
}

Result Ostrel::recognize(AudioStream& stream, double duration, const ProgressCallback& progress)
{
    const Clock::time_point began = Clock::now();
    Transcript transcript = pipeline_.run(stream, [&](double fraction) { report(progress, fraction); });
    report(progress, 1.0);
    if (transcript.words.empty() && !(duration > 0))
        throw OstrelError::invalidAudio("no samples");
    clampToDuration(transcript.words, duration);
    const std::chrono::duration<double> elapsed = Clock::now() - began;
    return { .text = std::move(transcript.text),
        .words = std::move(transcript.words),
        .duration = duration,
        .processingTime = elapsed.count() };
}

} // namespace Ostrel
