// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/Schedule.h"

#include "Plan/ConstantSteps.h"

#include <gtest/gtest.h>

namespace MLProgram {

namespace {

Step step(std::vector<BufferIndex> reads, std::vector<BufferIndex> writes)
{
    return { "test", std::move(reads), std::move(writes), {} };
}

bool overlap(const Schedule& schedule, const ArenaLayout& layout, BufferIndex a, BufferIndex b)
{
    return layout.offsets[a] < layout.offsets[b] + schedule.buffers[b].size
        && layout.offsets[b] < layout.offsets[a] + schedule.buffers[a].size;
}

// Doubles the single number of one buffer into another.
Step doubling(BufferIndex from, BufferIndex to)
{
    Step made = step({ from }, { to });
    made.bind = [from, to](const Memory& memory) -> std::function<void()> {
        return [x = memory.floats(from), y = memory.floats(to)] { *y = 2 * *x; };
    };
    return made;
}

Tensor number(float value)
{
    Tensor tensor({ ElementType::real, {} });
    tensor.view().reals()[0] = value;
    return tensor;
}

View viewOf(BufferIndex buffer)
{
    return { buffer, ElementType::real, 0, {}, {} };
}

TEST(Schedule, LetsBuffersOfDifferentTimesShareBytes)
{
    Schedule schedule;
    const BufferIndex input = schedule.addBuffer(100, Buffer::Kind::lasting);
    const BufferIndex first = schedule.addBuffer(1000);
    const BufferIndex second = schedule.addBuffer(1000);
    const BufferIndex third = schedule.addBuffer(1000);
    schedule.steps = { step({ input }, { first }), step({ first }, { second }), step({ second }, { third }) };
    const ArenaLayout layout = layOut(schedule);
    EXPECT_TRUE(overlap(schedule, layout, first, third));
    EXPECT_FALSE(overlap(schedule, layout, first, second)); // a step reads one while it writes the other
    EXPECT_FALSE(overlap(schedule, layout, second, third));
    EXPECT_LT(layout.size, 2500U);
}

TEST(Schedule, KeepsLastingBuffersToThemselves)
{
    Schedule schedule;
    const BufferIndex input = schedule.addBuffer(64, Buffer::Kind::lasting);
    const BufferIndex unused = schedule.addBuffer(64, Buffer::Kind::lasting);
    const BufferIndex between = schedule.addBuffer(64);
    const BufferIndex output = schedule.addBuffer(64, Buffer::Kind::lasting);
    schedule.steps = { step({ input }, { between }), step({ between }, { output }) };
    const ArenaLayout layout = layOut(schedule);
    const BufferIndex all[] = { input, unused, between, output };
    for (const BufferIndex a : all) {
        for (const BufferIndex b : all)
            EXPECT_TRUE(a == b || !overlap(schedule, layout, a, b));
    }
}

TEST(Schedule, AlignsEveryBuffer)
{
    Schedule schedule;
    for (const size_t size : { 1, 63, 65, 128 })
        schedule.addBuffer(size, Buffer::Kind::lasting);
    for (const size_t offset : layOut(schedule).offsets)
        EXPECT_EQ(offset % 64, 0U);
}

TEST(Schedule, GivesNoRoomToConstantsAndToWhatNoStepUses)
{
    Schedule schedule;
    schedule.addConstant(number(1));
    schedule.addBuffer(5000);
    EXPECT_EQ(layOut(schedule).size, 0U);
}

TEST(Schedule, NamesStepsByTheirSizes)
{
    EXPECT_EQ(stepName("product", { 188, 1024, 4096 }), "product 188x1024x4096");
    EXPECT_EQ(stepName("cumsum", {}), "cumsum");
}

TEST(ConstantSteps, RunOnceAndGiveBackWhatNobodyReadsAnyMore)
{
    Schedule schedule;
    const BufferIndex source = schedule.addConstant(number(3));
    const BufferIndex doubled = schedule.addBuffer(sizeof(float));
    const BufferIndex fourfold = schedule.addBuffer(sizeof(float));
    const BufferIndex input = schedule.addBuffer(sizeof(float), Buffer::Kind::lasting);
    const BufferIndex output = schedule.addBuffer(sizeof(float));
    schedule.steps = { doubling(source, doubled), doubling(doubled, fourfold), doubling(input, output) };
    runConstantSteps(schedule, { viewOf(fourfold), viewOf(output) });
    ASSERT_EQ(schedule.steps.size(), 1U);
    EXPECT_EQ(schedule.steps[0].reads, std::vector<BufferIndex> { input });
    EXPECT_EQ(schedule.buffers[fourfold].kind, Buffer::Kind::constant);
    EXPECT_EQ(*static_cast<const float*>(schedule.buffers[fourfold].value.view().data), 12.0f);
    EXPECT_EQ(schedule.buffers[source].value.view().data, nullptr);
    EXPECT_EQ(schedule.buffers[doubled].value.view().data, nullptr);
}

TEST(ConstantSteps, LeaveABufferThatIsPartlyComputed)
{
    Schedule schedule;
    const BufferIndex source = schedule.addConstant(number(3));
    const BufferIndex input = schedule.addBuffer(sizeof(float), Buffer::Kind::lasting);
    const BufferIndex both = schedule.addBuffer(2 * sizeof(float));
    schedule.steps = { doubling(source, both), doubling(input, both) };
    runConstantSteps(schedule, {});
    EXPECT_EQ(schedule.steps.size(), 2U);
    EXPECT_EQ(schedule.buffers[both].kind, Buffer::Kind::computed);
}

} // namespace

} // namespace MLProgram
