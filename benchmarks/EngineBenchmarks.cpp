// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// The whole engine over a recording, with the small model that comes with the source: how fast it is, and which share
// of the time goes into anything but the stages.
#include "FileAudioStream.h"

#include <MLProgram/MLModel.h>
#include <Ostrel/Ostrel.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

const std::filesystem::path source = SOURCE_FOLDER;

// Runs a stage, and keeps account of the time that it takes.
class TimedStage final : public Ostrel::Stage {
public:
    TimedStage(const std::filesystem::path& bundle, Seconds& spent)
        : model_(bundle)
        , spent_(spent)
    {
    }

    const MLProgram::MLModelDescription& modelDescription() const override { return model_.modelDescription(); }

    void predict(
        const MLProgram::MLDictionaryFeatureProvider& inputs, const MLProgram::MLPredictionOptions& options) override
    {
        const auto start = Clock::now();
        model_.prediction(inputs, options);
        spent_ += Clock::now() - start;
    }

private:
    MLProgram::MLModel model_;
    Seconds& spent_;
};

// All samples of a recording, at the rate of the small model.
std::vector<float> samplesOf(const char* recording)
{
    constexpr int64_t sampleRateHz = 16'000;
    constexpr double chunkSeconds = 10;
    Ostrel::FileAudioStream stream(source / "samples" / recording, sampleRateHz, chunkSeconds);
    std::vector<float> samples;
    while (stream.read(sampleRateHz, samples) > 0) { }
    return samples;
}

void transcribe(benchmark::State& state, const char* recording)
{
    Seconds inStages {};
    Ostrel::Ostrel engine(Ostrel::Assets::load(source / "models/small-english",
        [&](const std::filesystem::path& bundle) { return std::make_unique<TimedStage>(bundle, inStages); }));
    const std::vector<float> samples = samplesOf(recording);
    const double duration = static_cast<double>(samples.size()) / engine.sampleRate();
    Seconds total {};
    for ([[maybe_unused]] auto _ : state) {
        Ostrel::ArrayAudioStream stream(samples);
        const auto start = Clock::now();
        engine.transcribe(stream, duration);
        total += Clock::now() - start;
    }
    const auto iterations = static_cast<double>(state.iterations());
    state.counters["stagesMilliseconds"] = 1e3 * inStages.count() / iterations;
    state.counters["restMilliseconds"] = 1e3 * (total - inStages).count() / iterations;
    state.counters["restPercentOfStages"] = 100 * (total - inStages) / inStages;
    state.counters["timesRealTime"] = duration * iterations / total.count();
}
BENCHMARK_CAPTURE(transcribe, LongReport, "long-report.m4a")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(transcribe, MeetingNote, "meeting-note.wav")->Unit(benchmark::kMillisecond)->UseRealTime();

// Decoding and resampling a compressed recording.
void readFile(benchmark::State& state, const char* recording)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(samplesOf(recording));
}
BENCHMARK_CAPTURE(readFile, LongReport, "long-report.m4a")->Unit(benchmark::kMillisecond)->UseRealTime();

void loadModel(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state)
        Ostrel::Ostrel(source / "models/small-english", MLProgram::MLComputeUnits::cpuOnly);
}
BENCHMARK(loadModel)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
