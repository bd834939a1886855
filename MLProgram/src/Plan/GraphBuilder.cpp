// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/GraphBuilder.h"

#include "Weights/WeightDecoder.h"

#include <MLProgram/MLModelError.h>
#include <PlatformSupport/Float16.h>
#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <cstring>
#include <map>

namespace MLProgram {

namespace {

// Values that the plain code may go through for the sake of folding. What is larger is computed by the plan's own
// kernels, once, when it is made.
constexpr int64_t valuesWorthFolding = 1 << 14;

// Moving data is cheap at any size, and weights must stay recognisable as weights behind it.
constexpr std::string_view dataMovements[]
    = { "cast", "expand_dims", "reshape", "slice_by_index", "split", "squeeze", "transpose" };

bool movesData(std::string_view operation)
{
    return std::ranges::find(dataMovements, operation) != std::end(dataMovements);
}

std::span<const std::byte> bytesOf(const TensorView& view)
{
    return { static_cast<const std::byte*>(view.data), static_cast<size_t>(view.count()) * sizeOf(view.type.element) };
}

// 16-bit floats again, when all values are such: a moved 16-bit weight stays one.
std::optional<Constant> narrowed(const TensorView& view)
{
    using PlatformSupport::Float16;
    const auto values = view.reals();
    std::vector<std::byte> bytes(values.size() * sizeof(Float16));
    const std::span<Float16> halves { reinterpret_cast<Float16*>(bytes.data()), values.size() };
    PlatformSupport::toFloat16(values, halves);
    const bool isExact = std::equal(values.begin(), values.end(), halves.begin(),
        [](float value, Float16 half) { return PlatformSupport::toFloat(half) == value; });
    if (!isExact)
        return std::nullopt;
    return Constant(ScalarType::float16, view.type.shape, std::move(bytes));
}

Constant constantOf(const TensorView& view)
{
    if (view.type.element == ElementType::real && view.count() > valuesWorthFolding) {
        if (auto half = narrowed(view))
            return *half;
    }
    const auto bytes = bytesOf(view);
    const ScalarType scalar = view.type.element == ElementType::real ? ScalarType::float32
        : view.type.element == ElementType::integer                  ? ScalarType::int32
                                                                     : ScalarType::boolean;
    return Constant(scalar, view.type.shape, std::vector<std::byte>(bytes.begin(), bytes.end()));
}

void checkDeclaration(const Operation& operation, const Value& output, const TensorType& type)
{
    if (type.element != elementTypeOf(output.type.scalar) || !admits(output.type, type.shape))
        throw MLModelError(MLModelError::Case::invalidProgram,
            operation.name + ": \"" + output.name + "\" is declared as " + description(output.type) + " and is "
                + description(type));
}

class Builder {
public:
    Builder(const Function& function, std::span<const Shape> parameterShapes)
        : function_(function)
    {
        for (size_t i = 0; i < function.parameters.size(); ++i) {
            const Value& parameter = function.values[function.parameters[i]];
            const TensorType type { elementTypeOf(parameter.type.scalar), parameterShapes[i] };
            graph_.parameters.push_back(map_[function.parameters[i]] = graph_.add(type));
        }
    }

    Graph build()
    {
        for (const Operation& operation : function_.operations) {
            try {
                translate(operation);
            } catch (const MLModelError& error) {
                throw MLModelError(error.which(), place(operation) + ": " + error.description());
            }
        }
        for (const ValueIndex output : function_.outputs)
            graph_.outputs.push_back(mapped(output));
        return std::move(graph_);
    }

private:
    void translate(const Operation& operation)
    {
        if (isWeightDecoder(operation.name))
            decode(operation);
        else
            add(operation);
    }

    ValueIndex mapped(ValueIndex value)
    {
        const auto found = map_.find(value);
        if (found != map_.end())
            return found->second;
        const auto& constant = function_.values[value].constant;
        PlatformSupport::precondition(constant.has_value(), "a value is used before it is computed");
        return map_[value] = graph_.add(*constant);
    }

    void decode(const Operation& operation)
    {
        const auto operand = [&](ValueIndex value) -> const Constant& {
            const auto& constant = graph_.values[mapped(value)].constant;
            if (!constant)
                throw MLModelError(MLModelError::Case::invalidProgram,
                    "\"" + function_.values[value].name + "\" is not known when the program is loaded");
            return *constant;
        };
        std::vector<Constant> decoded = decodeWeights(function_, operation, operand);
        for (size_t i = 0; i < decoded.size(); ++i)
            map_[operation.outputs[i]] = graph_.add(std::move(decoded[i]));
    }

    void add(const Operation& operation)
    {
        GraphNode node { operation.name, operation.opset, operation.arguments, {} };
        for (Argument& argument : node.arguments) {
            for (ValueIndex& value : argument.values)
                value = mapped(value);
        }
        const OperationDefinition* definition = findOperation(operation.name);
        PlatformSupport::precondition(definition != nullptr, "an unknown operation came past loading");
        const Operands operands = graph_.operandsOf(node);
        const TensorTypes types = definition->infer(operands);
        operands.require(types.size() == operation.outputs.size(), "another number of outputs is declared");
        for (size_t i = 0; i < types.size(); ++i)
            checkDeclaration(operation, function_.values[operation.outputs[i]], types[i]);
        if (isWorthFolding(node, types))
            return fold(node, *definition, types, operation.outputs);
        for (size_t i = 0; i < operation.outputs.size(); ++i)
            node.outputs.push_back(map_[operation.outputs[i]] = graph_.add(types[i]));
        graph_.nodes.push_back(std::move(node));
    }

    bool isWorthFolding(const GraphNode& node, const TensorTypes& outputs) const
    {
        int64_t values = 0;
        for (const Argument& argument : node.arguments) {
            for (const ValueIndex value : argument.values) {
                if (!graph_.isConstant(value))
                    return false;
                values += graph_.values[value].constant->count();
            }
        }
        for (const TensorType& type : outputs)
            values += elementCount(type.shape);
        return values <= valuesWorthFolding || movesData(node.operation);
    }

    void fold(const GraphNode& node, const OperationDefinition& definition, const TensorTypes& types,
        const std::vector<ValueIndex>& outputs)
    {
        std::vector<Tensor> large; // kept while the operation runs
        Operands operands(node.operation, node.opset);
        for (const Argument& argument : node.arguments) {
            Operands::List list;
            for (const ValueIndex index : argument.values) {
                const GraphValue& value = graph_.values[index];
                if (value.constant->isText()) {
                    operands.add(argument.name, value.constant->text());
                    continue;
                }
                large.push_back(value.known ? *value.known : value.constant->widened());
                list.push_back(large.back().view());
            }
            if (!list.empty())
                operands.add(argument.name, std::move(list));
        }
        std::vector<Tensor> results;
        std::vector<TensorView> views;
        for (const TensorType& type : types) {
            results.emplace_back(type);
            views.push_back(results.back().view());
        }
        definition.evaluate(operands, views);
        for (size_t i = 0; i < outputs.size(); ++i)
            map_[outputs[i]] = graph_.add(constantOf(views[i]));
    }

    const Function& function_;
    Graph graph_;
    std::map<ValueIndex, ValueIndex> map_;
};

bool keepsState(const Function& function)
{
    return std::ranges::any_of(function.parameters,
        [&](ValueIndex value) { return function.values[value].type.kind != ValueType::Kind::tensor; });
}

} // namespace

std::optional<Graph> buildGraph(const Function& function, std::span<const Shape> parameterShapes)
{
    if (keepsState(function))
        return std::nullopt;
    try {
        return Builder(function, parameterShapes).build();
    } catch (const ValueNotKnown&) {
        return std::nullopt;
    }
}

} // namespace MLProgram
