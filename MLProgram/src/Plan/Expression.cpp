// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/Expression.h"

#include <PlatformSupport/Precondition.h>

#include <algorithm>

namespace MLProgram {

namespace {

using Reference = Expression::Reference;

// Hands out the slots behind the inputs; a term's slot is free again after its last use.
class SlotAssignment {
public:
    explicit SlotAssignment(const Expression& expression)
        : expression_(expression)
        , lastUses_(expression.terms.size(), 0)
        , slots_(expression.terms.size(), 0)
        , isTaken_(maximumSlots, false)
    {
        std::fill_n(isTaken_.begin(), std::min<size_t>(expression.inputs.size(), maximumSlots), true);
        for (size_t i = 0; i < expression.terms.size(); ++i)
            forEachOperand(i, [&](Reference reference) { lastUses_[static_cast<size_t>(reference)] = i; });
    }

    // Nothing when all slots are taken.
    std::optional<RowProgram::Instruction> assign(size_t term)
    {
        const Expression::Term& source = expression_.terms[term];
        RowProgram::Instruction instruction { source.operation, 0, slot(source.a), slot(source.b), slot(source.c) };
        forEachOperand(term, [&](Reference reference) {
            const auto operand = static_cast<size_t>(reference);
            if (lastUses_[operand] == term)
                isTaken_[slots_[operand]] = false;
        });
        const auto free = std::ranges::find(isTaken_, false);
        if (free == isTaken_.end())
            return std::nullopt;
        *free = true;
        slots_[term] = instruction.result = static_cast<uint8_t>(free - isTaken_.begin());
        return instruction;
    }

private:
    template <typename Visit> void forEachOperand(size_t term, const Visit& visit) const
    {
        const Expression::Term& source = expression_.terms[term];
        for (const Reference reference : { source.a, source.b, source.c }) {
            if (reference >= 0)
                visit(reference);
        }
    }

    uint8_t slot(Reference reference) const
    {
        return static_cast<uint8_t>(reference < 0 ? -1 - reference : slots_[static_cast<size_t>(reference)]);
    }

    const Expression& expression_;
    std::vector<size_t> lastUses_;
    std::vector<uint8_t> slots_;
    std::vector<bool> isTaken_;
};

bool isSame(const View& a, const View& b)
{
    return a.buffer == b.buffer && a.element == b.element && a.offset == b.offset && a.strides == b.strides;
}

Reference inputReference(size_t index)
{
    return -1 - static_cast<Reference>(index);
}

} // namespace

std::optional<RowProgram> rowProgramOf(const Expression& expression)
{
    if (expression.inputs.size() >= maximumSlots)
        return std::nullopt;
    RowProgram program;
    program.inputCount = static_cast<int>(expression.inputs.size());
    SlotAssignment slots(expression);
    for (size_t i = 0; i < expression.terms.size(); ++i) {
        const auto instruction = slots.assign(i);
        if (!instruction)
            return std::nullopt;
        program.instructions.push_back(*instruction);
    }
    if (expression.terms.empty())
        program.instructions.push_back({ RowOperation::copy, static_cast<uint8_t>(program.inputCount), 0, 0, 0 });
    return program;
}

Reference merge(Expression& whole, const Expression& part)
{
    PlatformSupport::precondition(!part.product || whole.inputs.empty(), "a product comes first in an expression");
    std::vector<Reference> inputs;
    for (const View& input : part.inputs) {
        const auto firstShared = whole.inputs.begin() + (whole.product ? 1 : 0);
        auto found = std::find_if(
            firstShared, whole.inputs.end(), [&](const View& existing) { return isSame(existing, input); });
        if (found == whole.inputs.end())
            found = whole.inputs.insert(whole.inputs.end(), input);
        inputs.push_back(inputReference(static_cast<size_t>(found - whole.inputs.begin())));
        if (part.product)
            whole.product = part.product;
    }
    const auto base = static_cast<Reference>(whole.terms.size());
    const auto moved = [&](Reference reference) {
        return reference < 0 ? inputs[static_cast<size_t>(-1 - reference)] : reference + base;
    };
    for (const Expression::Term& term : part.terms)
        whole.terms.push_back({ term.operation, moved(term.a), moved(term.b), moved(term.c) });
    return part.terms.empty() ? inputs.front() : static_cast<Reference>(whole.terms.size()) - 1;
}

} // namespace MLProgram
