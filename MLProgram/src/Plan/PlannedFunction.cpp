// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/PlannedFunction.h"

#include "Plan/GraphBuilder.h"

#include <algorithm>
#include <utility>

namespace MLProgram {

namespace {

constexpr size_t keptPlans = 4;

bool isFor(const std::vector<Shape>& shapes, std::span<const TensorView> inputs)
{
    return std::ranges::equal(shapes, inputs, {}, {}, [](const TensorView& input) { return input.type.shape; });
}

} // namespace

PlannedFunction::PlannedFunction(std::shared_ptr<const Function> function, Fallback fallback, const KernelSet& kernels)
    : function_(std::move(function))
    , makeFallback_(std::move(fallback))
    , kernels_(kernels)
    , weights_(kernels.panelWidth)
{
    std::vector<Shape> shapes;
    for (const ValueIndex parameter : function_->parameters) {
        const ValueType& type = function_->values[parameter].type;
        if (type.kind != ValueType::Kind::tensor || !type.hasKnownShape())
            return;
        shapes.push_back(type.shape);
    }
    compile(std::move(shapes));
}

std::span<const TensorView> PlannedFunction::run(std::span<const TensorView> inputs)
{
    Entry& entry = entryFor(inputs);
    return entry.executable != nullptr ? entry.executable->run(inputs) : fallback().run(inputs);
}

PlannedFunction::Entry& PlannedFunction::entryFor(std::span<const TensorView> inputs)
{
    const auto found = std::ranges::find_if(entries_, [&](const Entry& entry) { return isFor(entry.shapes, inputs); });
    if (found != entries_.end()) {
        entries_.splice(entries_.begin(), entries_, found);
        return entries_.front();
    }
    std::vector<Shape> shapes;
    for (const TensorView& input : inputs)
        shapes.push_back(input.type.shape);
    return compile(std::move(shapes));
}

PlannedFunction::Entry& PlannedFunction::compile(std::vector<Shape> shapes)
{
    std::unique_ptr<Executable> plan;
    if (auto graph = buildGraph(*function_, shapes)) {
        removeUnused(*graph);
        plan = std::make_unique<Plan>(*graph, kernels_, weights_);
    }
    if (entries_.size() == keptPlans)
        entries_.pop_back();
    entries_.push_front({ std::move(shapes), std::move(plan) });
    return entries_.front();
}

Executable& PlannedFunction::fallback()
{
    if (fallback_ == nullptr)
        fallback_ = makeFallback_();
    return *fallback_;
}

} // namespace MLProgram
