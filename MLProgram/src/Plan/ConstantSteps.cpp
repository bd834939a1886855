// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/ConstantSteps.h"

#include <algorithm>

namespace MLProgram {

namespace {

Tensor storage(size_t bytes)
{
    return Tensor({ ElementType::boolean, { static_cast<int64_t>(bytes) } });
}

bool isConstant(const Schedule& schedule, BufferIndex buffer)
{
    return schedule.buffers[buffer].kind == Buffer::Kind::constant;
}

// Several steps may write parts of one buffer; it is constant only if all of them are.
std::vector<bool> findConstantSteps(const Schedule& schedule)
{
    std::vector<bool> isComputed(schedule.buffers.size(), false);
    for (size_t i = 0; i < schedule.buffers.size(); ++i)
        isComputed[i] = schedule.buffers[i].kind == Buffer::Kind::lasting;
    std::vector<bool> constantSteps(schedule.steps.size(), true);
    for (bool hasChanged = true; hasChanged;) {
        hasChanged = false;
        for (size_t i = 0; i < schedule.steps.size(); ++i) {
            const Step& step = schedule.steps[i];
            const auto isComputedBuffer = [&](BufferIndex buffer) { return isComputed[buffer]; };
            if (!constantSteps[i]
                || (std::ranges::none_of(step.reads, isComputedBuffer)
                    && std::ranges::none_of(step.writes, isComputedBuffer)))
                continue;
            constantSteps[i] = false;
            hasChanged = true;
            for (const BufferIndex buffer : step.writes)
                isComputed[buffer] = true;
        }
    }
    return constantSteps;
}

void runStep(Schedule& schedule, const Step& step)
{
    for (const BufferIndex buffer : step.writes) {
        Buffer& target = schedule.buffers[buffer];
        if (target.kind != Buffer::Kind::constant)
            target = { Buffer::Kind::constant, target.size, storage(target.size) };
    }
    std::vector<std::byte*> bases(schedule.buffers.size(), nullptr);
    for (size_t i = 0; i < bases.size(); ++i)
        bases[i] = static_cast<std::byte*>(schedule.buffers[i].value.view().data);
    step.bind(Memory(std::move(bases)))();
}

void giveBackUnread(Schedule& schedule, const std::vector<View>& kept)
{
    std::vector<bool> isRead(schedule.buffers.size(), false);
    for (const Step& step : schedule.steps) {
        for (const BufferIndex buffer : step.reads)
            isRead[buffer] = true;
    }
    for (const View& view : kept)
        isRead[view.buffer] = true;
    for (size_t i = 0; i < isRead.size(); ++i) {
        if (!isRead[i] && isConstant(schedule, static_cast<BufferIndex>(i)))
            schedule.buffers[i].value = Tensor();
    }
}

} // namespace

void runConstantSteps(Schedule& schedule, const std::vector<View>& kept)
{
    const std::vector<bool> constantSteps = findConstantSteps(schedule);
    std::vector<Step> remaining;
    for (size_t i = 0; i < constantSteps.size(); ++i) {
        if (constantSteps[i])
            runStep(schedule, schedule.steps[i]);
        else
            remaining.push_back(std::move(schedule.steps[i]));
    }
    schedule.steps = std::move(remaining);
    giveBackUnread(schedule, kept);
}

} // namespace MLProgram
