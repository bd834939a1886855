// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/Plan.h"

#include "Plan/ConstantSteps.h"

#include <PlatformSupport/Precondition.h>

#include <cstring>

namespace MLProgram {

Plan::Plan(const Graph& graph, const KernelSet& kernels, WeightStore& weights)
{
    Lowering lowering(graph, kernels, weights);
    lowering.run();
    Schedule& schedule = lowering.schedule();
    runConstantSteps(schedule, lowering.outputs());

    const ArenaLayout layout = layOut(schedule);
    arenaSize_ = layout.size;
    arena_ = Pages(layout.size);
    std::vector<std::byte*> bases;
    for (size_t i = 0; i < schedule.buffers.size(); ++i) {
        const Buffer& buffer = schedule.buffers[i];
        const bool isConstant = buffer.kind == Buffer::Kind::constant;
        bases.push_back(
            isConstant ? static_cast<std::byte*>(buffer.value.view().data) : arena_.data() + layout.offsets[i]);
        if (isConstant)
            constants_.push_back(buffer.value);
    }
    const Memory memory(std::move(bases));
    for (const Step& step : schedule.steps)
        steps_.push_back({ step.name, step.bind(memory) });
    for (const View& view : lowering.inputs())
        inputs_.push_back(memory.tensor(view));
    for (const View& view : lowering.outputs())
        outputs_.push_back(memory.tensor(view));
}

std::span<const TensorView> Plan::run(std::span<const TensorView> inputs)
{
    PlatformSupport::precondition(inputs.size() == inputs_.size(), "a plan is given another number of inputs");
    for (size_t i = 0; i < inputs.size(); ++i) {
        PlatformSupport::precondition(inputs[i].type == inputs_[i].type, "a plan is given an input of another type");
        const size_t size = static_cast<size_t>(inputs[i].count()) * sizeOf(inputs[i].type.element);
        if (size > 0)
            std::memcpy(inputs_[i].data, inputs[i].data, size);
    }
    for (const BoundStep& step : steps_)
        step.action();
    return outputs_;
}

} // namespace MLProgram
