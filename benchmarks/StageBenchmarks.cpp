// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// A stage of build/benchmarks: how long it takes to load and to run, and how much memory. Its outputs are left beside
// it, for a comparison with another runtime's.
#include <MLProgram/MLModel.h>

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

using namespace MLProgram;

namespace {

constexpr const char* stageNames[] = { "A", "B", "C-1-1", "C-8-4", "C-32-8" };

std::filesystem::path folderOf(const std::string& stage)
{
    return std::filesystem::path(SOURCE_FOLDER) / "build/benchmarks" / stage;
}

std::shared_ptr<MLMultiArray> arrayFor(const MLFeatureDescription& feature, MLMultiArrayDataType type)
{
    return std::make_shared<MLMultiArray>(feature.multiArrayConstraint->shape, type);
}

MLDictionaryFeatureProvider readInputs(const std::filesystem::path& folder, const MLModelDescription& description)
{
    std::map<std::string, MLFeatureValue> inputs;
    for (const auto& [name, feature] : description.inputDescriptionsByName) {
        const auto array = arrayFor(feature, MLMultiArrayDataType::float32);
        std::ifstream file(folder / (name + ".f32"), std::ios::binary);
        file.read(static_cast<char*>(array->dataPointer()), array->count() * static_cast<int64_t>(sizeof(float)));
        const auto halves = arrayFor(feature, MLMultiArrayDataType::float16);
        PlatformSupport::toFloat16(array->elements<float>(), halves->elements<PlatformSupport::Float16>());
        inputs.emplace(name, MLFeatureValue(halves));
    }
    return MLDictionaryFeatureProvider(std::move(inputs));
}

// Backings in 32 bits, the form in which two runtimes' results are compared.
MLPredictionOptions makeBackings(const MLModelDescription& description)
{
    MLPredictionOptions options;
    for (const auto& [name, feature] : description.outputDescriptionsByName)
        options.outputBackings[name] = arrayFor(feature, MLMultiArrayDataType::float32);
    return options;
}

void writeOutputs(const std::filesystem::path& folder, const MLPredictionOptions& options)
{
    for (const auto& [name, array] : options.outputBackings) {
        std::ofstream file(folder / (name + ".ours.f32"), std::ios::binary);
        file.write(
            static_cast<const char*>(array->dataPointer()), array->count() * static_cast<int64_t>(sizeof(float)));
    }
}

class Stopwatch {
public:
    double milliseconds() const
    {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start_).count();
    }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// Time that the processors have spent on this process: unlike the clock's, it does not grow when others are busy.
double processorMilliseconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

double peakMegabytes()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

// Times and their counters: the best and the median run, the processors' time for one run.
class Runs {
public:
    void add(double milliseconds) { times_.push_back(milliseconds); }

    void report(benchmark::State& state)
    {
        std::ranges::sort(times_);
        state.counters["processorMilliseconds"]
            = (processorMilliseconds() - processorStart_) / static_cast<double>(times_.size());
        state.counters["bestMilliseconds"] = times_.front();
        state.counters["medianMilliseconds"] = times_[times_.size() / 2];
    }

private:
    std::vector<double> times_;
    double processorStart_ = processorMilliseconds();
};

// A stage that is loaded once in the process, however often its benchmark is repeated.
struct LoadedStage {
    explicit LoadedStage(const std::filesystem::path& folder)
        : model(folder / "stage.mlmodelc", { .computeUnits = MLComputeUnits::cpuOnly, .functionName = {} })
        , loadMilliseconds(loading.milliseconds())
        , inputs(readInputs(folder, model.modelDescription()))
        , options(makeBackings(model.modelDescription()))
    {
        model.prediction(inputs, options);
        writeOutputs(folder, options);
    }

    Stopwatch loading;
    MLModel model;
    double loadMilliseconds;
    MLDictionaryFeatureProvider inputs;
    MLPredictionOptions options;
};

void runStage(benchmark::State& state, const std::string& name)
{
    static std::map<std::string, LoadedStage> loaded;
    if (!std::filesystem::exists(folderOf(name) / "features.json"))
        return state.SkipWithError("the stage is not there: benchmarks/run writes it");
    LoadedStage& stage = loaded.try_emplace(name, folderOf(name)).first->second;
    Runs runs;
    for ([[maybe_unused]] auto _ : state) {
        const Stopwatch running;
        stage.model.prediction(stage.inputs, stage.options);
        runs.add(running.milliseconds());
    }
    runs.report(state);
    state.counters["loadMilliseconds"] = stage.loadMilliseconds;
    state.counters["peakMegabytes"] = peakMegabytes(); // of the process: run one stage alone to know its own
}

void loadStage(benchmark::State& state, const std::string& stage)
{
    const std::filesystem::path bundle = folderOf(stage) / "stage.mlmodelc";
    if (!std::filesystem::exists(bundle))
        return state.SkipWithError("the stage is not there: benchmarks/run writes it");
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(MLModel(bundle));
}

[[maybe_unused]] const bool areRegistered = [] {
    for (const std::string name : stageNames) {
        const auto run = [name](benchmark::State& state) { runStage(state, name); };
        const auto load = [name](benchmark::State& state) { loadStage(state, name); };
        benchmark::RegisterBenchmark(("Stage/" + name).c_str(), run)->Unit(benchmark::kMillisecond)->UseRealTime();
        benchmark::RegisterBenchmark(("Load/" + name).c_str(), load)->Unit(benchmark::kMillisecond)->UseRealTime();
    }
    return true;
}();

} // namespace
