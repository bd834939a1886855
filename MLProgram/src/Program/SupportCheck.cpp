// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Program/SupportCheck.h"

#include "Operations/Operation.h"
#include "Weights/WeightDecoder.h"

#include <MLProgram/MLModelError.h>

#include <algorithm>
#include <set>
#include <string>

namespace MLProgram {
namespace {

// Decoded weights of one function. A published speech model has 1 to 3 GiB of them.
constexpr int64_t maximumDecodedBytes = int64_t { 16 } << 30;

bool isStateOperation(std::string_view name)
{
    return name == readStateOperation || name == writeStateOperation;
}

bool isKnown(const Operation& operation)
{
    return !operation.hasNestedBlocks
        && (isStateOperation(operation.name) || isWeightDecoder(operation.name)
            || findOperation(operation.name) != nullptr);
}

std::string listed(const std::set<std::string>& names)
{
    std::string text;
    size_t left = names.size();
    for (const std::string& name : names) {
        text += name;
        --left;
        text += left > 1 ? ", " : left == 1 ? " and " : "";
    }
    return text;
}

void checkNames(const Function& function)
{
    std::set<std::string> unknown;
    for (const Operation& operation : function.operations) {
        if (!isKnown(operation))
            unknown.insert(operation.name);
    }
    if (!unknown.empty())
        throw MLModelError(MLModelError::Case::unsupported,
            (unknown.size() == 1 ? "the operation " : "the operations ") + listed(unknown)
                + (unknown.size() == 1 ? " is" : " are") + " not supported");
}

[[noreturn]] void fail(const Operation& operation, MLModelError::Case which, const std::string& fault)
{
    throw MLModelError(which, place(operation) + ": " + operation.name + ": " + fault);
}

void checkOperand(const Function& function, const Operation& operation, const Argument& argument, ValueIndex index)
{
    const ValueType::Kind kind = function.values[index].type.kind;
    const bool wantsState = isStateOperation(operation.name) && argument.name == "input";
    if (kind != ValueType::Kind::tensor && kind != ValueType::Kind::state)
        fail(operation, MLModelError::Case::unsupported, "a list is not supported as an operand");
    if (function.values[index].type.isText() && argument.values.size() != 1)
        fail(operation, MLModelError::Case::unsupported, "a list of strings is not supported as an operand");
    if (wantsState != (kind == ValueType::Kind::state))
        fail(operation, MLModelError::Case::invalidProgram,
            "\"" + argument.name + "\" is " + (wantsState ? "no state" : "a state"));
}

void checkValues(const Function& function, const Operation& operation)
{
    for (const Argument& argument : operation.arguments) {
        for (const ValueIndex index : argument.values)
            checkOperand(function, operation, argument, index);
    }
    for (const ValueIndex index : operation.outputs) {
        const ValueType& type = function.values[index].type;
        if (type.kind != ValueType::Kind::tensor || type.isText())
            fail(operation, MLModelError::Case::unsupported, "an output of type " + description(type));
    }
}

// The outputs of decoders are as large as they are declared; open dimensions are refused when they are decoded.
void checkDecodedSize(const Function& function)
{
    int64_t total = 0;
    for (const Operation& operation : function.operations) {
        if (!isWeightDecoder(operation.name))
            continue;
        for (const ValueIndex index : operation.outputs) {
            const ValueType& type = function.values[index].type;
            if (!type.hasKnownShape())
                fail(operation, MLModelError::Case::invalidProgram, "the shape of a weight is open");
            total += checkedByteCount(type.scalar, elementCount(type.shape)).value();
        }
        if (total > maximumDecodedBytes)
            throw MLModelError(MLModelError::Case::invalidProgram, "the weights take more than 16 GiB");
    }
}

void checkOutputs(const Function& function)
{
    for (const ValueIndex index : function.outputs) {
        const Value& value = function.values[index];
        if (value.type.kind != ValueType::Kind::tensor || value.type.isText())
            throw MLModelError(
                MLModelError::Case::unsupported, "the output \"" + value.name + "\" is not a tensor of numbers");
    }
}

void checkParameters(const Function& function)
{
    for (const ValueIndex index : function.parameters) {
        const Value& value = function.values[index];
        const bool isTensor = value.type.kind == ValueType::Kind::tensor && !value.type.isText();
        if (!isTensor && value.type.kind != ValueType::Kind::state)
            throw MLModelError(
                MLModelError::Case::unsupported, "the input \"" + value.name + "\" is not a tensor of numbers");
    }
}

} // namespace

void checkSupport(const Function& function)
{
    checkNames(function);
    checkParameters(function);
    for (const Operation& operation : function.operations)
        checkValues(function, operation);
    checkOutputs(function);
    checkDecodedSize(function);
}

} // namespace MLProgram
