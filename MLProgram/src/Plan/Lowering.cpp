// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/Lowering.h"

#include "Kernels/Product.h"
#include "Kernels/Reorder.h"

#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <numeric>

namespace MLProgram {

namespace {

size_t sizeInBytes(ElementType element, const Shape& shape)
{
    return static_cast<size_t>(elementCount(shape)) * sizeOf(element);
}

const LoweringRule* findRule(std::string_view operation)
{
    for (const auto rules : { convolutionRules(), elementwiseRules(), movementRules(), productRules(), rowRules() }) {
        const auto found = std::ranges::find(rules, operation, &LoweringRule::operation);
        if (found != rules.end())
            return &*found;
    }
    return nullptr;
}

bool isEmpty(const Graph& graph, const GraphNode& node)
{
    const auto isEmptyValue = [&](ValueIndex value) { return elementCount(graph.type(value).shape) == 0; };
    return std::ranges::any_of(node.outputs, isEmptyValue)
        || std::ranges::any_of(node.arguments,
            [&](const Argument& argument) { return std::ranges::any_of(argument.values, isEmptyValue); });
}

} // namespace

Lowering::Lowering(const Graph& graph, const KernelSet& kernels, WeightStore& weights)
    : graph_(graph)
    , kernels_(kernels)
    , weights_(weights)
    , views_(graph.values.size())
    , expressions_(graph.values.size())
    , consumers_(graph.values.size())
    , useCounts_(MLProgram::useCounts(graph))
{
    for (const GraphNode& node : graph.nodes) {
        for (const Argument& argument : node.arguments) {
            for (const ValueIndex value : argument.values)
                consumers_[value].push_back(&node);
        }
    }
}

void Lowering::run()
{
    for (const ValueIndex parameter : graph_.parameters) {
        const TensorType& type = graph_.type(parameter);
        const BufferIndex buffer = schedule_.addBuffer(sizeInBytes(type.element, type.shape), Buffer::Kind::lasting);
        inputs_.push_back({ buffer, type.element, 0, type.shape, denseStrides(type.shape) });
        define(parameter, inputs_.back());
    }
    for (const GraphNode& node : graph_.nodes)
        lower(node);
    for (const ValueIndex output : graph_.outputs)
        outputs_.push_back(outputView(output));
}

void Lowering::lower(const GraphNode& node)
{
    const LoweringRule* rule = isEmpty(graph_, node) ? nullptr : findRule(node.operation);
    if (rule == nullptr || !rule->lower(*this, node))
        lowerToReference(*this, node);
}

View Lowering::outputView(ValueIndex value)
{
    const View dense = denseView(value);
    Buffer& buffer = schedule_.buffers[dense.buffer];
    if (buffer.kind == Buffer::Kind::computed)
        buffer.kind = Buffer::Kind::lasting;
    return dense;
}

View Lowering::view(ValueIndex value)
{
    if (views_[value])
        return *views_[value];
    if (graph_.isConstant(value))
        return constantView(value);
    PlatformSupport::precondition(expressions_[value].has_value(), "a value is used before it is computed");
    const Expression expression = std::move(*expressions_[value]);
    expressions_[value].reset();
    define(value, compute(value, expression));
    return *views_[value];
}

View Lowering::denseView(ValueIndex value)
{
    std::vector<size_t> order(graph_.type(value).shape.size());
    std::iota(order.begin(), order.end(), size_t { 0 });
    return orderedView(value, order);
}

View Lowering::orderedView(ValueIndex value, std::span<const size_t> order)
{
    const View existing = view(value);
    const Shape strides = orderedStrides(existing.shape, order);
    bool isOrdered = true;
    for (size_t i = 0; i < existing.shape.size(); ++i)
        isOrdered = isOrdered && (existing.shape[i] == 1 || existing.strides[i] == strides[i]);
    if (isOrdered)
        return existing;
    const View copy = newView(existing.element, existing.shape, strides);
    emitReorder(existing, copy);
    views_[value] = copy;
    return copy;
}

View Lowering::constantView(ValueIndex value)
{
    const GraphValue& source = graph_.values[value];
    Tensor tensor = source.known ? *source.known : source.constant->widened();
    const BufferIndex buffer = schedule_.addConstant(std::move(tensor));
    views_[value] = View { buffer, source.type.element, 0, source.type.shape, denseStrides(source.type.shape) };
    return *views_[value];
}

const Expression* Lowering::expression(ValueIndex value) const
{
    return expressions_[value] && useCounts_[value] == 1 ? &*expressions_[value] : nullptr;
}

View Lowering::number(float value)
{
    const auto found = numbers_.find(value);
    if (found != numbers_.end())
        return found->second;
    Tensor tensor({ ElementType::real, {} });
    tensor.view().reals()[0] = value;
    return numbers_[value] = View { schedule_.addConstant(std::move(tensor)), ElementType::real, 0, {}, {} };
}

void Lowering::define(ValueIndex value, const View& view)
{
    PlatformSupport::precondition(view.shape == graph_.type(value).shape, "a value has another shape than inferred");
    views_[value] = view;
}

void Lowering::define(ValueIndex value, Expression expression)
{
    expressions_[value] = std::move(expression);
}

View Lowering::newView(ElementType element, const Shape& shape, const Shape& strides)
{
    return { schedule_.addBuffer(sizeInBytes(element, shape)), element, 0, shape, strides };
}

BufferIndex Lowering::newWorkspace(int64_t floats)
{
    return schedule_.addBuffer(static_cast<size_t>(floats) * sizeof(float));
}

View Lowering::compute(ValueIndex value, const Expression& expression)
{
    if (!expression.product) {
        const View to = newView(ElementType::real, expression.shape, bestStrides(value, expression));
        emitMap(expression, to);
        return to;
    }
    if (const auto result = computeProduct(expression))
        return *result;
    // An operand lies so that rows of the product do not find it: the product first, then the rest.
    Expression rest = expression;
    rest.inputs[0] = *computeProduct({ expression.shape, { expression.inputs[0] }, {}, expression.product });
    rest.product.reset();
    return compute(value, rest);
}

Expression Lowering::mappable(ValueIndex value)
{
    const Expression* pending = expression(value);
    if (pending == nullptr || pending->product) {
        const View there = view(value);
        return { there.shape, { there }, {}, nullptr };
    }
    Expression result = std::move(*expressions_[value]);
    expressions_[value].reset();
    return result;
}

std::optional<View> Lowering::computeProduct(const Expression& expression)
{
    const auto call = productCall(expression);
    if (!call)
        return std::nullopt;
    const PendingProduct& product = *expression.product;
    const std::vector<size_t> order = orderWithLast(expression.shape.size(), product.columnDimension);
    const View to = newView(ElementType::real, expression.shape, orderedStrides(expression.shape, order));
    const BufferIndex workspace = newWorkspace(productWorkspace(product.rows, call->depth));
    const auto bind = [bindProduct = call->bind, to, workspace, &kernels = kernels_](
                          const Memory& memory) -> std::function<void()> {
        const auto bound = bindProduct(memory);
        Product complete = *bound;
        complete.result = memory.reals(to);
        complete.workspace = memory.floats(workspace);
        return [complete, bound, &kernels] { multiply(complete, kernels); };
    };
    emit({ call->name, call->reads, { to.buffer, workspace }, bind });
    return to;
}

void Lowering::emitMap(const Expression& expression, const View& to)
{
    Step step { stepName("element-wise", { to.count() }), {}, { to.buffer }, {} };
    for (const View& input : expression.inputs)
        step.reads.push_back(input.buffer);
    step.bind = [program = *rowProgramOf(expression), inputs = expression.inputs, to, &kernels = kernels_](
                    const Memory& memory) -> std::function<void()> {
        Map map { to.shape, program, {}, memory.values(to) };
        // The loop's innermost dimension is the one in which the result lies densest.
        const std::vector<size_t> order = memoryOrder(to);
        const auto arranged = [&](const View& view) {
            StridedValues values { memory.at(view), view.element, {} };
            for (const size_t dimension : order)
                values.strides.push_back(view.strides[dimension]);
            return values;
        };
        map.output = arranged(to);
        for (size_t i = 0; i < order.size(); ++i)
            map.shape[i] = to.shape[order[i]];
        for (const View& input : inputs)
            map.inputs.push_back(arranged(input));
        simplify(map);
        return [map, &kernels] { MLProgram::run(map, kernels); };
    };
    emit(std::move(step));
}

void Lowering::emitReorder(const View& from, const View& to)
{
    emit({ stepName("copy", { to.count() }), { from.buffer }, { to.buffer },
        [from, to](const Memory& memory) -> std::function<void()> {
            const Reorder reorder { to.shape, to.element, memory.at(from), from.strides, memory.at(to), to.strides };
            return [reorder] { MLProgram::run(reorder); };
        } });
}

} // namespace MLProgram
