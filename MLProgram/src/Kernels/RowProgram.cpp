// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/RowProgram.h"

#include <PlatformSupport/Precondition.h>

#include <algorithm>

namespace MLProgram {

namespace {

// Values computed at a time: all slots together take 32 KB at most.
constexpr int64_t blockLength = 512;

template <typename Value> void gather(const void* from, int64_t start, int64_t step, int64_t count, float* to)
{
    const auto* values = static_cast<const Value*>(from) + start * step;
    for (int64_t i = 0; i < count; ++i)
        to[i] = static_cast<float>(values[i * step]);
}

void gather(const RowInput& input, int64_t start, int64_t count, float* to)
{
    switch (input.element) {
    case ElementType::real:
        return gather<float>(input.data, start, input.step, count, to);
    case ElementType::integer:
        return gather<int32_t>(input.data, start, input.step, count, to);
    case ElementType::boolean:
        return gather<uint8_t>(input.data, start, input.step, count, to);
    }
}

// The slots of one row while it is computed, a block at a time.
class Slots {
public:
    Slots(std::span<const RowInput> inputs)
        : inputs_(inputs)
    {
        for (size_t i = 0; i < inputs.size(); ++i) {
            if (inputs[i].step != 0)
                continue;
            gather(inputs[i], 0, 1, blocks_[i]);
            std::fill_n(blocks_[i], uniformCopies, blocks_[i][0]);
            operands_[i] = { blocks_[i], true };
        }
    }

    void moveTo(int64_t start, int64_t count)
    {
        for (size_t i = 0; i < inputs_.size(); ++i) {
            const RowInput& input = inputs_[i];
            if (input.step == 0)
                continue;
            const bool isDirect = input.element == ElementType::real && input.step == 1;
            if (!isDirect)
                gather(input, start, count, blocks_[i]);
            operands_[i] = { isDirect ? static_cast<const float*>(input.data) + start : blocks_[i], false };
        }
    }

    RowOperand operand(uint8_t slot) const
    {
        return slot < inputs_.size() ? operands_[slot] : RowOperand { blocks_[slot], false };
    }
    float* block(uint8_t slot) { return blocks_[slot]; }

private:
    std::span<const RowInput> inputs_;
    RowOperand operands_[maximumSlots];
    alignas(64) float blocks_[maximumSlots][blockLength];
};

void scatter(const float* from, int64_t count, float* to, int64_t step)
{
    for (int64_t i = 0; i < count; ++i)
        to[i * step] = from[i];
}

} // namespace

void runRow(const RowProgram& program, std::span<const RowInput> inputs, const RowOutput& output, int64_t count,
    const KernelSet& kernels)
{
    PlatformSupport::precondition(inputs.size() <= maximumSlots, "a row program has too many inputs");
    Slots slots(inputs);
    for (int64_t start = 0; start < count; start += blockLength) {
        const int64_t length = std::min(blockLength, count - start);
        slots.moveTo(start, length);
        for (const RowProgram::Instruction& instruction : program.instructions) {
            const bool isDirect = &instruction == &program.instructions.back() && output.step == 1;
            kernels.rowInstruction({ instruction.operation, slots.operand(instruction.a), slots.operand(instruction.b),
                slots.operand(instruction.c), isDirect ? output.data + start : slots.block(instruction.result),
                length });
        }
        if (output.step != 1)
            scatter(slots.block(program.instructions.back().result), length, output.data + start * output.step,
                output.step);
    }
}

} // namespace MLProgram
