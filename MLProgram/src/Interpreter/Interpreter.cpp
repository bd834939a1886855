// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Interpreter/Interpreter.h"

#include "Program/SupportCheck.h"
#include "Weights/WeightDecoder.h"

#include <MLProgram/MLModelError.h>
#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <utility>

namespace MLProgram {
namespace {

// Tensors that a run holds at one time. A program that needs more is not one of this runtime's.
constexpr size_t maximumRunBytes = size_t { 16 } << 30;

constexpr uint32_t always = std::numeric_limits<uint32_t>::max();

size_t byteCount(const TensorType& type)
{
    return static_cast<size_t>(elementCount(type.shape)) * sizeOf(type.element);
}

[[noreturn]] void fail(const Operation& operation, MLModelError::Case which, const std::string& fault)
{
    throw MLModelError(which, place(operation) + ": " + fault);
}

} // namespace

Interpreter::Interpreter(std::shared_ptr<const Function> function)
    : function_(std::move(function))
    , slots_(function_->values.size())
    , pool_(maximumRunBytes)
{
    findLastUses();
    makeStates();
    prepareOperations();
    outputs_.resize(function_->outputs.size());
}

std::span<const TensorView> Interpreter::run(std::span<const TensorView> inputs)
{
    for (Slot& slot : slots_)
        release(slot);
    size_t next = 0;
    for (const ValueIndex parameter : function_->parameters) {
        if (function_->values[parameter].type.kind == ValueType::Kind::state)
            continue;
        PlatformSupport::precondition(next < inputs.size(), "every parameter has an input");
        slots_[parameter].view = inputs[next++];
    }
    for (const Step& step : steps_)
        perform(step);
    for (size_t i = 0; i < outputs_.size(); ++i)
        outputs_[i] = slots_[function_->outputs[i]].view;
    return outputs_;
}

void Interpreter::findLastUses()
{
    for (uint32_t i = 0; i < function_->operations.size(); ++i) {
        for (const Argument& argument : function_->operations[i].arguments) {
            for (const ValueIndex value : argument.values)
                slots_[value].lastUse = i;
        }
    }
    for (const ValueIndex output : function_->outputs)
        slots_[output].lastUse = always;
}

void Interpreter::makeStates()
{
    for (const ValueIndex parameter : function_->parameters) {
        const Value& value = function_->values[parameter];
        if (value.type.kind != ValueType::Kind::state)
            continue;
        const ValueType& kept = value.type.parts.front();
        keep(slots_[parameter], Tensor({ elementTypeOf(kept.scalar), kept.shape }));
    }
}

// Weights are widened where something but a decoder reads them.
void Interpreter::prepareOperations()
{
    std::vector<std::optional<Constant>> constants(function_->values.size());
    for (size_t i = 0; i < constants.size(); ++i)
        constants[i] = function_->values[i].constant;
    const auto widen = [&](ValueIndex value) {
        Slot& slot = slots_[value];
        if (!constants[value] || constants[value]->isText() || slot.isConstant)
            return;
        keep(slot, constants[value]->widened());
        slot.isConstant = true;
    };
    for (uint32_t i = 0; i < function_->operations.size(); ++i) {
        const Operation& operation = function_->operations[i];
        if (isWeightDecoder(operation.name)) {
            decode(operation, constants);
            continue;
        }
        for (const Argument& argument : operation.arguments)
            std::for_each(argument.values.begin(), argument.values.end(), widen);
        const Step step { &operation, findOperation(operation.name), i };
        if (isConstant(operation)) {
            perform(step);
            keepAsConstants(operation);
        } else {
            steps_.push_back(step);
        }
    }
    std::for_each(function_->outputs.begin(), function_->outputs.end(), widen);
}

void Interpreter::decode(const Operation& operation, std::vector<std::optional<Constant>>& constants)
{
    std::vector<Constant> decoded = decodeWeights(*function_, operation, [&](ValueIndex value) -> const Constant& {
        if (!constants[value])
            fail(operation, MLModelError::Case::invalidProgram,
                "\"" + function_->values[value].name + "\" is not known when the program is loaded");
        return *constants[value];
    });
    for (size_t i = 0; i < decoded.size(); ++i)
        constants[operation.outputs[i]] = std::move(decoded[i]);
}

bool Interpreter::isConstant(const Operation& operation) const
{
    if (operation.name == readStateOperation || operation.name == writeStateOperation)
        return false;
    return std::all_of(operation.arguments.begin(), operation.arguments.end(), [&](const Argument& argument) {
        return std::all_of(argument.values.begin(), argument.values.end(), [&](ValueIndex value) {
            const auto& constant = function_->values[value].constant;
            return slots_[value].isConstant || (constant && constant->isText());
        });
    });
}

void Interpreter::keepAsConstants(const Operation& operation)
{
    for (const ValueIndex output : operation.outputs) {
        Slot& slot = slots_[output];
        const Tensor copy(slot.view.type);
        std::memcpy(copy.view().data, slot.view.data, byteCount(slot.view.type));
        release(slot);
        keep(slot, copy);
        slot.isConstant = true;
    }
}

// What is kept does not pass through the pool, but counts all the same.
void Interpreter::keep(Slot& slot, const Tensor& tensor)
{
    keptBytes_ += byteCount(tensor.type());
    if (keptBytes_ > maximumRunBytes)
        throw MLModelError(MLModelError::Case::outOfMemory, "the constants of the program take too much memory");
    slot.storage = tensor;
    slot.view = slot.storage.view();
}

void Interpreter::perform(const Step& step)
{
    try {
        if (step.definition == nullptr)
            access(*step.operation);
        else
            evaluate(step);
    } catch (const MLModelError& error) {
        fail(*step.operation, error.which(), error.description());
    }
    releaseUnused(step);
}

void Interpreter::evaluate(const Step& step)
{
    const Operation& operation = *step.operation;
    const Operands operands = operandsOf(operation);
    const TensorTypes types = step.definition->infer(operands);
    operands.require(types.size() == operation.outputs.size(), "another number of outputs is declared");
    boost::container::small_vector<TensorView, 3> outputs;
    for (size_t i = 0; i < types.size(); ++i)
        outputs.push_back(makeRoom(operation, operation.outputs[i], types[i]));
    step.definition->evaluate(operands, outputs);
}

void Interpreter::access(const Operation& operation)
{
    const Operands operands = operandsOf(operation);
    const TensorView& state = operands.tensor("input");
    if (operation.name == readStateOperation) {
        operands.require(operation.outputs.size() == 1, "one output is declared");
        const TensorView copy = makeRoom(operation, operation.outputs.front(), state.type);
        std::memcpy(copy.data, state.data, byteCount(state.type));
        return;
    }
    const TensorView& data = operands.tensor("data");
    operands.require(data.type == state.type, "the data have another type than the state");
    std::memcpy(state.data, data.data, byteCount(state.type));
}

// Finds room for an output, whose type is as declared.
TensorView Interpreter::makeRoom(const Operation& operation, ValueIndex output, const TensorType& type)
{
    const Value& value = function_->values[output];
    if (type.element != elementTypeOf(value.type.scalar) || !admits(value.type, type.shape))
        throw MLModelError(MLModelError::Case::invalidProgram,
            operation.name + ": \"" + value.name + "\" is declared as " + description(value.type) + " and is "
                + description(type));
    Slot& slot = slots_[output];
    slot.buffer = pool_.acquire(byteCount(type), slot.buffer);
    slot.ownsBuffer = true;
    slot.view = { type, pool_.data(slot.buffer) };
    return slot.view;
}

Operands Interpreter::operandsOf(const Operation& operation) const
{
    Operands operands(operation.name, operation.opset);
    for (const Argument& argument : operation.arguments) {
        Operands::List list;
        std::string_view text;
        for (const ValueIndex value : argument.values) {
            const auto& constant = function_->values[value].constant;
            if (constant && constant->isText())
                text = constant->text();
            else
                list.push_back(slots_[value].view);
        }
        if (list.empty() && argument.values.size() == 1)
            operands.add(argument.name, text);
        else
            operands.add(argument.name, std::move(list));
    }
    return operands;
}

void Interpreter::releaseUnused(const Step& step)
{
    const auto releaseIfUnused = [&](ValueIndex value) {
        if (slots_[value].lastUse <= step.index)
            release(slots_[value]);
    };
    for (const Argument& argument : step.operation->arguments)
        std::for_each(argument.values.begin(), argument.values.end(), releaseIfUnused);
    std::for_each(step.operation->outputs.begin(), step.operation->outputs.end(), releaseIfUnused);
}

void Interpreter::release(Slot& slot) noexcept
{
    if (slot.ownsBuffer)
        pool_.release(slot.buffer);
    slot.ownsBuffer = false;
}

} // namespace MLProgram
