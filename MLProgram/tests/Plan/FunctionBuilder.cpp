// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/FunctionBuilder.h"

#include "Kernels/KernelTesting.h"
#include "Operations/Operation.h"

#include <cstring>

namespace MLProgram {

namespace {

template <typename T> Constant constantOf(ScalarType type, const Shape& shape, const std::vector<T>& values)
{
    std::vector<std::byte> bytes(values.size() * sizeof(T));
    if (!values.empty())
        std::memcpy(bytes.data(), values.data(), bytes.size());
    return Constant(type, shape, std::move(bytes));
}

ScalarType scalarOf(ElementType element)
{
    switch (element) {
    case ElementType::real:
        return ScalarType::float32;
    case ElementType::integer:
        return ScalarType::int32;
    case ElementType::boolean:
        break;
    }
    return ScalarType::boolean;
}

} // namespace

ValueIndex FunctionBuilder::input(const Shape& shape, ScalarType type)
{
    ValueType declared;
    declared.scalar = type;
    declared.shape = shape;
    function_.values.push_back({ "in" + std::to_string(function_.parameters.size()), declared, std::nullopt });
    function_.parameters.push_back(static_cast<ValueIndex>(function_.values.size() - 1));
    return function_.parameters.back();
}

ValueIndex FunctionBuilder::weight(const Shape& shape, float size)
{
    const std::vector<float> values = randomValues(elementCount(shape), nextSeed_++, size);
    return addConstant(constantOf(ScalarType::float16, shape, halves(values)));
}

ValueIndex FunctionBuilder::number(float value)
{
    return addConstant(constantOf(ScalarType::float32, {}, std::vector<float> { value }));
}

ValueIndex FunctionBuilder::integer(int32_t value)
{
    return addConstant(constantOf(ScalarType::int32, {}, std::vector<int32_t> { value }));
}

ValueIndex FunctionBuilder::integers(const std::vector<int32_t>& values)
{
    return addConstant(constantOf(ScalarType::int32, { static_cast<int64_t>(values.size()) }, values));
}

ValueIndex FunctionBuilder::flag(bool value)
{
    return addConstant(constantOf(ScalarType::boolean, {}, std::vector<uint8_t> { value }));
}

ValueIndex FunctionBuilder::text(std::string value)
{
    return addConstant(Constant(std::move(value)));
}

ValueIndex FunctionBuilder::addConstant(Constant constant)
{
    ValueType type;
    type.scalar = constant.scalarType();
    type.shape = constant.shape();
    function_.values.push_back({ "", type, std::move(constant) });
    return static_cast<ValueIndex>(function_.values.size() - 1);
}

ValueIndex FunctionBuilder::add(std::string operation, Arguments arguments)
{
    return addWithOutputs(std::move(operation), std::move(arguments)).front();
}

std::vector<ValueIndex> FunctionBuilder::addWithOutputs(std::string operation, Arguments arguments)
{
    Operands operands(operation, 17);
    std::vector<Tensor> known;
    for (const auto& [name, values] : arguments) {
        Operands::List list;
        for (const ValueIndex index : values) {
            const Value& value = function_.values[index];
            if (value.constant && value.constant->isText()) {
                operands.add(name, value.constant->text());
                continue;
            }
            known.push_back(value.constant ? value.constant->widened() : Tensor());
            list.push_back({ { elementTypeOf(value.type.scalar), value.type.shape }, known.back().view().data });
        }
        if (!list.empty())
            operands.add(name, std::move(list));
    }
    const TensorTypes types = findOperation(operation)->infer(operands);
    Operation statement { operation, 17, {}, {}, 1 };
    for (auto& [name, values] : arguments)
        statement.arguments.push_back({ name, values });
    for (const TensorType& type : types) {
        ValueType declared;
        declared.scalar = scalarOf(type.element);
        declared.shape = type.shape;
        function_.values.push_back({ "v" + std::to_string(function_.values.size()), declared, std::nullopt });
        statement.outputs.push_back(static_cast<ValueIndex>(function_.values.size() - 1));
    }
    function_.operations.push_back(statement);
    return statement.outputs;
}

Function FunctionBuilder::finish(std::vector<ValueIndex> outputs)
{
    function_.name = "main";
    function_.opset = 17;
    function_.outputs = std::move(outputs);
    return std::move(function_);
}

} // namespace MLProgram
