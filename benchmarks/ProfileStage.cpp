// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Says where a stage's time goes: the time of each kind of step, over a few runs.
//
// Usage: ProfileStage STAGE_FOLDER SECONDS; MLPROGRAM_THREADS says on how many threads.
#include "LoadedFunction.h"
#include "Plan/GraphBuilder.h"
#include "Plan/Plan.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

using namespace MLProgram;

namespace {

using Clock = std::chrono::steady_clock;

struct Share {
    std::string name;
    size_t steps = 0;
    double milliseconds = 0; // of one run
};

std::vector<Tensor> zeroInputs(const Function& function)
{
    std::vector<Tensor> inputs;
    for (const ValueIndex parameter : function.parameters) {
        const ValueType& type = function.values[parameter].type;
        inputs.emplace_back(TensorType { elementTypeOf(type.scalar), type.shape });
    }
    return inputs;
}

// The best time of each step, added up by their names, the largest first.
std::vector<Share> profile(const Plan& plan, double seconds)
{
    const auto steps = plan.steps();
    std::vector<double> best(steps.size(), 1e9);
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    do {
        for (size_t i = 0; i < steps.size(); ++i) {
            const auto start = Clock::now();
            steps[i].action();
            best[i] = std::min(best[i], std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        }
    } while (Clock::now() < end);
    std::map<std::string, Share> shares;
    for (size_t i = 0; i < steps.size(); ++i) {
        Share& share = shares[steps[i].name];
        share.name = steps[i].name;
        share.milliseconds += best[i];
        ++share.steps;
    }
    std::vector<Share> sorted;
    for (const auto& [name, share] : shares)
        sorted.push_back(share);
    std::ranges::sort(sorted, std::greater {}, &Share::milliseconds);
    return sorted;
}

void profileStage(const std::filesystem::path& folder, double seconds)
{
    const LoadedFunction loaded = loadFunction(folder / "stage.mlmodelc", "");
    const std::vector<Tensor> inputs = zeroInputs(*loaded.function);
    std::vector<Shape> shapes;
    std::vector<TensorView> views;
    for (const Tensor& input : inputs) {
        shapes.push_back(input.type().shape);
        views.push_back(input.view());
    }
    auto graph = buildGraph(*loaded.function, shapes);
    removeUnused(*graph);
    WeightStore weights(kernelsOfThisProcessor().panelWidth);
    Plan plan(*graph, kernelsOfThisProcessor(), weights);
    plan.run(views);

    double total = 0;
    const std::vector<Share> shares = profile(plan, seconds);
    for (const Share& share : shares)
        total += share.milliseconds;
    for (const Share& share : shares)
        std::printf("%9.3f ms %5.1f %%  %4zu times  %s\n", share.milliseconds, 100 * share.milliseconds / total,
            share.steps, share.name.c_str());
    std::printf("%9.3f ms in all\n", total);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "Usage: ProfileStage STAGE_FOLDER SECONDS\n");
        return 2;
    }
    profileStage(argv[1], std::stod(argv[2]));
}
