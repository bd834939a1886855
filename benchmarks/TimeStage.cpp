// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Loads a stage's bundle, times it, and writes its outputs.
//
// Usage: TimeStage STAGE_FOLDER SECONDS; MLPROGRAM_THREADS says on how many threads.
#include <MLProgram/MLModel.h>
#include <MLProgram/MLModelError.h>

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

using namespace MLProgram;

namespace {

constexpr size_t minimumRuns = 3;

using Clock = std::chrono::steady_clock;

double millisecondsOf(const std::function<void()>& action)
{
    const auto start = Clock::now();
    action();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
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

// Backings in 32 bits, the form in which the two runtimes' results are compared.
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

rusage usageSoFar()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage;
}

// Time that the processors have spent on this process: unlike the clock's, it does not grow when others are busy.
double processorMilliseconds()
{
    const rusage usage = usageSoFar();
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

void timeStage(const std::filesystem::path& folder, double seconds)
{
    MLModelConfiguration configuration;
    configuration.computeUnits = MLComputeUnits::cpuOnly;
    std::unique_ptr<MLModel> model;
    const double load
        = millisecondsOf([&] { model = std::make_unique<MLModel>(folder / "stage.mlmodelc", configuration); });

    const MLDictionaryFeatureProvider inputs = readInputs(folder, model->modelDescription());
    const MLPredictionOptions options = makeBackings(model->modelDescription());
    model->prediction(inputs, options);
    writeOutputs(folder, options);

    std::vector<double> times;
    const double processorStart = processorMilliseconds();
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    while (times.size() < minimumRuns || Clock::now() < end)
        times.push_back(millisecondsOf([&] { model->prediction(inputs, options); }));

    const double processor = (processorMilliseconds() - processorStart) / static_cast<double>(times.size());
    const double peakMegabytes = static_cast<double>(usageSoFar().ru_maxrss) / 1024;

    std::printf("{\"loadMilliseconds\": %g, \"peakMegabytes\": %g, \"processorMilliseconds\": %g, \"times\": [", load,
        peakMegabytes, processor);
    for (size_t i = 0; i < times.size(); ++i)
        std::printf("%s%g", i == 0 ? "" : ", ", times[i]);
    std::printf("]}\n");
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "Usage: TimeStage STAGE_FOLDER SECONDS\n");
        return 2;
    }
    try {
        timeStage(argv[1], std::stod(argv[2]));
    } catch (const MLModelError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
