// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/Lowering.h"

#include <algorithm>
#include <numbers>

namespace MLProgram {

namespace {

using Reference = Expression::Reference;
using enum RowOperation;

// Slots that a merged expression must leave free for what is still to come.
constexpr size_t sparedSlots = 4;

// Builds the expression of one node; operands that are expressions themselves become part of it.
class ExpressionBuilder {
public:
    ExpressionBuilder(Lowering& lowering, const GraphNode& node)
        : lowering_(lowering)
        , node_(node)
        , operands_(lowering.graph().operandsOf(node))
    {
        expression_.shape = lowering.graph().type(node.outputs.front()).shape;
        // A product has to come first, and there can be only one.
        for (const Argument& argument : node.arguments) {
            if (expression_.product)
                break;
            const Expression* part = partOf(argument.values.front());
            if (part != nullptr && part->product) {
                productValue_ = argument.values.front();
                productReference_ = merge(expression_, *part);
            }
        }
    }

    const Operands& operands() const { return operands_; }

    Reference operand(std::string_view name)
    {
        const ValueIndex value = node_.argument(name)->values.front();
        if (productValue_ == value)
            return productReference_;
        const Expression* part = partOf(value);
        if (part != nullptr && !part->product) {
            Expression tried = expression_;
            const Reference reference = merge(tried, *part);
            if (fits(tried)) {
                expression_ = std::move(tried);
                return reference;
            }
        }
        return input(lowering_.view(value));
    }

    Reference number(float value) { return input(lowering_.number(value)); }
    Reference parameter(std::string_view name) { return number(operands_.real(name)); }
    Reference parameter(std::string_view name, float otherwise) { return number(operands_.real(name, otherwise)); }

    Reference apply(RowOperation operation, Reference a, Reference b = -1, Reference c = -1)
    {
        expression_.terms.push_back({ operation, a, b, c });
        return static_cast<Reference>(expression_.terms.size()) - 1;
    }

    void finish() { lowering_.define(node_.outputs.front(), std::move(expression_)); }

private:
    const Expression* partOf(ValueIndex value) const
    {
        const Expression* part = lowering_.expression(value);
        return part != nullptr && part->shape == expression_.shape ? part : nullptr;
    }

    static bool fits(const Expression& expression)
    {
        const auto program = rowProgramOf(expression);
        if (!program)
            return false;
        size_t slots = expression.inputs.size();
        for (const auto& instruction : program->instructions)
            slots = std::max<size_t>(slots, instruction.result + size_t { 1 });
        return slots + sparedSlots <= maximumSlots;
    }

    Reference input(const View& view)
    {
        const Expression leaf { expression_.shape, { broadcast(view, expression_.shape) }, {}, nullptr };
        return merge(expression_, leaf);
    }

    Lowering& lowering_;
    const GraphNode& node_;
    Operands operands_;
    Expression expression_;
    std::optional<ValueIndex> productValue_;
    Reference productReference_ = -1;
};

bool isReal(const Lowering& lowering, const GraphNode& node)
{
    return lowering.graph().type(node.outputs.front()).element == ElementType::real;
}

bool areReal(const Lowering& lowering, const GraphNode& node, std::initializer_list<std::string_view> names)
{
    return isReal(lowering, node) && std::ranges::all_of(names, [&](std::string_view name) {
        return lowering.graph().type(node.argument(name)->values.front()).element == ElementType::real;
    });
}

template <RowOperation operation> bool lowerUnary(Lowering& lowering, const GraphNode& node)
{
    if (!areReal(lowering, node, { "x" }))
        return false;
    ExpressionBuilder builder(lowering, node);
    builder.apply(operation, builder.operand("x"));
    builder.finish();
    return true;
}

template <RowOperation operation> bool lowerBinary(Lowering& lowering, const GraphNode& node)
{
    if (!areReal(lowering, node, { "x", "y" }))
        return false;
    ExpressionBuilder builder(lowering, node);
    const Reference x = builder.operand("x");
    builder.apply(operation, x, builder.operand("y"));
    builder.finish();
    return true;
}

// Functions of x and parameters: `body` gets the builder and x.
using Body = void (*)(ExpressionBuilder& builder, Reference x);

template <Body body> bool lowerWith(Lowering& lowering, const GraphNode& node)
{
    if (!areReal(lowering, node, { "x" }))
        return false;
    ExpressionBuilder builder(lowering, node);
    body(builder, builder.operand("x"));
    builder.finish();
    return true;
}

void addEpsilonThen(ExpressionBuilder& builder, Reference x, float otherwise, RowOperation operation)
{
    const Reference sum = builder.apply(add, x, builder.parameter("epsilon", otherwise));
    builder.apply(operation, sum);
}

void logarithmBody(ExpressionBuilder& builder, Reference x)
{
    addEpsilonThen(builder, x, 1e-45f, logarithm);
}
void reciprocalRootBody(ExpressionBuilder& builder, Reference x)
{
    addEpsilonThen(builder, x, 1e-12f, reciprocalSquareRoot);
}
void inverseBody(ExpressionBuilder& builder, Reference x)
{
    addEpsilonThen(builder, x, 1e-4f, reciprocal);
}

void clipBody(ExpressionBuilder& builder, Reference x)
{
    const Reference raised = builder.apply(maximum, x, builder.parameter("alpha"));
    builder.apply(minimum, raised, builder.parameter("beta"));
}

void relu6Body(ExpressionBuilder& builder, Reference x)
{
    const Reference raised = builder.apply(relu, x);
    builder.apply(minimum, raised, builder.number(6));
}

void thresholdBody(ExpressionBuilder& builder, Reference x)
{
    builder.apply(maximum, x, builder.parameter("alpha"));
}

void linearActivationBody(ExpressionBuilder& builder, Reference x)
{
    const Reference scaled = builder.apply(multiply, x, builder.parameter("alpha"));
    builder.apply(add, scaled, builder.parameter("beta", 0));
}

void scaledTanhBody(ExpressionBuilder& builder, Reference x)
{
    const Reference scaled = builder.apply(multiply, x, builder.parameter("beta", 1));
    const Reference bent = builder.apply(tangentHyperbolic, scaled);
    builder.apply(multiply, bent, builder.parameter("alpha", 1));
}

void hardSigmoidBody(ExpressionBuilder& builder, Reference x)
{
    const Reference scaled = builder.apply(multiply, x, builder.parameter("alpha", 0.2f));
    const Reference sum = builder.apply(add, scaled, builder.parameter("beta", 0.5f));
    const Reference raised = builder.apply(relu, sum);
    builder.apply(minimum, raised, builder.number(1));
}

// 0.5 · x · (1 + f)
void halfOfXTimesOnePlus(ExpressionBuilder& builder, Reference x, Reference f)
{
    const Reference half = builder.apply(multiply, x, builder.number(0.5f));
    const Reference sum = builder.apply(add, f, builder.number(1));
    builder.apply(multiply, half, sum);
}

void geluBody(ExpressionBuilder& builder, Reference x)
{
    const std::string_view mode = builder.operands().text("mode", "EXACT");
    if (mode == "SIGMOID_APPROXIMATION") {
        const Reference scaled = builder.apply(multiply, x, builder.number(1.702f));
        const Reference gate = builder.apply(sigmoid, scaled);
        builder.apply(multiply, x, gate);
    } else if (mode == "TANH_APPROXIMATION") {
        const Reference squared = builder.apply(square, x);
        const Reference cube = builder.apply(multiply, squared, x);
        const Reference bent = builder.apply(multiply, cube, builder.number(0.044715f));
        const Reference sum = builder.apply(add, x, bent);
        const Reference scaled = builder.apply(multiply, sum, builder.number(0.797884560802865f)); // sqrt(2 / pi)
        halfOfXTimesOnePlus(builder, x, builder.apply(tangentHyperbolic, scaled));
    } else {
        const Reference scaled = builder.apply(divide, x, builder.number(std::numbers::sqrt2_v<float>));
        halfOfXTimesOnePlus(builder, x, builder.apply(errorFunction, scaled));
    }
}

bool lowerSelect(Lowering& lowering, const GraphNode& node)
{
    if (!areReal(lowering, node, { "a", "b" }))
        return false;
    ExpressionBuilder builder(lowering, node);
    const Reference condition = builder.operand("cond");
    const Reference a = builder.operand("a");
    builder.apply(select, condition, a, builder.operand("b"));
    builder.finish();
    return true;
}

// To a float from anything; a float becomes a float of another width, which here is the same.
bool lowerCast(Lowering& lowering, const GraphNode& node)
{
    const ValueIndex x = node.argument("x")->values.front();
    if (!isReal(lowering, node))
        return false;
    if (lowering.graph().type(x).element == ElementType::real && lowering.expression(x) == nullptr) {
        lowering.define(node.outputs.front(), lowering.view(x));
        return true;
    }
    ExpressionBuilder builder(lowering, node);
    builder.apply(copy, builder.operand("x"));
    builder.finish();
    return true;
}

constexpr LoweringRule rules[] = {
    { "abs", lowerUnary<absolute> },
    { "add", lowerBinary<add> },
    { "cast", lowerCast },
    { "clip", lowerWith<clipBody> },
    { "erf", lowerUnary<errorFunction> },
    { "exp", lowerUnary<exponential> },
    { "gelu", lowerWith<geluBody> },
    { "inverse", lowerWith<inverseBody> },
    { "linear_activation", lowerWith<linearActivationBody> },
    { "log", lowerWith<logarithmBody> },
    { "maximum", lowerBinary<maximum> },
    { "minimum", lowerBinary<minimum> },
    { "mul", lowerBinary<multiply> },
    { "real_div", lowerBinary<divide> },
    { "relu", lowerUnary<relu> },
    { "relu6", lowerWith<relu6Body> },
    { "rsqrt", lowerWith<reciprocalRootBody> },
    { "scaled_tanh", lowerWith<scaledTanhBody> },
    { "select", lowerSelect },
    { "sigmoid", lowerUnary<sigmoid> },
    { "sigmoid_hard", lowerWith<hardSigmoidBody> },
    { "silu", lowerUnary<silu> },
    { "sqrt", lowerUnary<squareRoot> },
    { "square", lowerUnary<square> },
    { "sub", lowerBinary<subtract> },
    { "tanh", lowerUnary<tangentHyperbolic> },
    { "threshold", lowerWith<thresholdBody> },
};

} // namespace

std::span<const LoweringRule> elementwiseRules() noexcept
{
    return rules;
}

} // namespace MLProgram
