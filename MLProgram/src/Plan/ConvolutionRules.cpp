// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Convolutions: channels last inside, whatever the program's own order is.
#include "Kernels/BandedDepthwise.h"
#include "Plan/PackedProducts.h"

#include <algorithm>

namespace MLProgram {

namespace {

// The geometry of a convolution, one entry for each spatial dimension.
struct Geometry {
    struct Dimension {
        int64_t kernel = 1;
        int64_t stride = 1;
        int64_t dilation = 1;
        int64_t padding = 0; // before the first position
    };
    boost::container::static_vector<Dimension, 3> dimensions;
    int64_t groups = 1;

    int64_t taps() const
    {
        int64_t count = 1;
        for (const Dimension& dimension : dimensions)
            count *= dimension.kernel;
        return count;
    }

    // Each output position sees just the input position of the same index.
    bool isPointwise() const
    {
        return std::ranges::all_of(
            dimensions, [](const Dimension& d) { return d.kernel == 1 && d.stride == 1 && d.padding == 0; });
    }
};

// Padding before the first position, of a `same` convolution.
int64_t samePadding(const Geometry::Dimension& dimension, int64_t input, bool isLower)
{
    const int64_t output = (input + dimension.stride - 1) / dimension.stride;
    const int64_t reach = (dimension.kernel - 1) * dimension.dilation + 1;
    const int64_t total = std::max<int64_t>(0, (output - 1) * dimension.stride + reach - input);
    return isLower ? total - total / 2 : total / 2;
}

Geometry geometryOf(const Operands& operands)
{
    const Shape& x = operands.tensor("x").type.shape;
    const Shape& weight = operands.tensor("weight").type.shape;
    const auto strides = operands.optionalIntegers("strides");
    const auto dilations = operands.optionalIntegers("dilations");
    const std::string_view padType = operands.text("pad_type", "valid");
    Geometry geometry;
    geometry.groups = operands.integer("groups", 1);
    for (size_t i = 0; i + 2 < x.size(); ++i) {
        Geometry::Dimension dimension { weight[i + 2], strides ? (*strides)[i] : 1, dilations ? (*dilations)[i] : 1,
            0 };
        if (padType == "custom" && operands.has("pad"))
            dimension.padding = operands.integers("pad")[2 * i];
        else if (padType == "same" || padType == "same_lower")
            dimension.padding = samePadding(dimension, x[i + 2], padType == "same_lower");
        geometry.dimensions.push_back(dimension);
    }
    return geometry;
}

// A window over a channels-last view; its input is filled in when the addresses are known.
Window windowOver(const View& x, const Shape& output, const Geometry& geometry)
{
    Window window;
    window.batch = x.shape[0];
    window.batchStride = x.strides[0];
    window.channels = x.shape[1];
    for (size_t i = 0; i < geometry.dimensions.size(); ++i) {
        const Geometry::Dimension& dimension = geometry.dimensions[i];
        window.dimensions.push_back({ x.shape[i + 2], output[i + 2], dimension.kernel, dimension.stride,
            dimension.dilation, dimension.padding, x.strides[i + 2] });
    }
    return window;
}

// The value with each position's channels side by side.
View channelsLast(Lowering& lowering, ValueIndex value)
{
    const View view = lowering.view(value);
    if (view.shape[1] == 1 || view.strides[1] == 1)
        return view;
    return lowering.orderedView(value, orderWithLast(view.shape.size(), 1));
}

// The weight [outputs, channels, kernel..] with the depth in the order in which a window gives it.
WeightLayout windowLayout(const Shape& weight)
{
    const Shape strides = denseStrides(weight);
    WeightLayout layout { { weight[0], strides[0] }, {} };
    for (size_t i = 2; i < weight.size(); ++i)
        layout.depth.push_back({ weight[i], strides[i] });
    layout.depth.push_back({ weight[1], strides[1] });
    return layout;
}

void lowerByProduct(Lowering& lowering, const GraphNode& node, const Geometry& geometry)
{
    const ValueIndex x = node.argument("x")->values.front();
    const ValueIndex weight = node.argument("weight")->values.front();
    const ValueIndex output = node.outputs.front();
    const Argument* bias = node.argument("bias");
    const auto biasValue = bias == nullptr ? std::nullopt : std::optional(bias->values.front());
    const WeightOperand operand { weight, windowLayout(lowering.graph().type(weight).shape) };
    if (geometry.isPointwise())
        return defineProduct(lowering, output, matrixRows(lowering, x, 1), operand, 1, biasValue);
    const View view = channelsLast(lowering, x);
    const Window window = windowOver(view, lowering.graph().type(output).shape, geometry);
    const auto bind = [view, window](const Memory& memory) {
        Window bound = window;
        bound.input = memory.reals(view);
        return std::make_shared<const WindowMatrix>(bound);
    };
    defineProduct(lowering, output, { view, window.positions(), bind }, operand, 1, biasValue);
}

// The weight [channels, 1, kernel..] as [kernel..][channels].
View depthwiseWeights(Lowering& lowering, ValueIndex weight)
{
    const Shape& shape = lowering.graph().type(weight).shape;
    const Tensor stored = lowering.graph().values[weight].constant->widened();
    const auto values = stored.view().reals();
    const int64_t channels = shape[0];
    const int64_t taps = elementCount(shape) / channels;
    Tensor turned({ ElementType::real, { taps, channels } });
    for (int64_t channel = 0; channel < channels; ++channel) {
        for (int64_t tap = 0; tap < taps; ++tap)
            turned.view().reals()[static_cast<size_t>(tap * channels + channel)]
                = values[static_cast<size_t>(channel * taps + tap)];
    }
    return { lowering.schedule().addConstant(turned), ElementType::real, 0, turned.type().shape, { channels, 1 } };
}

// Products of a depth up to this are computed in bands: rows that two bands need cost little.
constexpr int64_t shallowDepth = 64;

// Results above this, in values, leave the caches before they are read again.
constexpr int64_t largeResult = 1 << 20;

// The input's product, when it is worth being computed band by band.
std::optional<ProductCall> bandedInput(const Lowering& lowering, ValueIndex x)
{
    const Shape& shape = lowering.graph().type(x).shape;
    const Expression* pending = lowering.expression(x);
    if (pending == nullptr || !pending->product || pending->product->columnDimension != 1 || shape[0] != 1
        || elementCount(shape) <= largeResult)
        return std::nullopt;
    auto call = productCall(*pending);
    return call && call->depth <= shallowDepth ? call : std::nullopt;
}

// A depthwise convolution on its way into the schedule: everything but where its input comes from.
struct DepthwiseStep {
    View weights;
    std::optional<View> bias;
    View to;
    Window window;

    Depthwise bind(const Memory& memory) const
    {
        return { window, memory.reals(weights), bias ? memory.reals(*bias) : nullptr, memory.reals(to),
            window.channels };
    }
    std::string name() const { return stepName("depthwise", { window.positions(), window.taps(), window.channels }); }
    std::vector<BufferIndex> reads(std::vector<BufferIndex> others) const
    {
        others.push_back(weights.buffer);
        if (bias)
            others.push_back(bias->buffer);
        return others;
    }
};

void emitDepthwise(Lowering& lowering, const DepthwiseStep& depthwise, const View& x)
{
    const auto bind = [depthwise, x, &kernels = lowering.kernels()](const Memory& memory) -> std::function<void()> {
        Depthwise bound = depthwise.bind(memory);
        bound.window.input = memory.reals(x);
        return [bound, &kernels] { MLProgram::run(bound, kernels); };
    };
    lowering.emit({ depthwise.name(), depthwise.reads({ x.buffer }), { depthwise.to.buffer }, bind });
}

void emitBanded(Lowering& lowering, const DepthwiseStep& depthwise, const ProductCall& call)
{
    const BufferIndex workspace = lowering.newWorkspace(bandedDepthwiseWorkspace(depthwise.window, call.depth));
    const auto bind = [depthwise, workspace, bindProduct = call.bind, &kernels = lowering.kernels()](
                          const Memory& memory) -> std::function<void()> {
        const auto product = bindProduct(memory);
        const BandedDepthwise bound { *product, depthwise.bind(memory), memory.floats(workspace) };
        return [bound, product, &kernels] { MLProgram::run(bound, kernels); };
    };
    lowering.emit({ call.name + " + " + depthwise.name(), depthwise.reads(call.reads),
        { depthwise.to.buffer, workspace }, bind });
}

void lowerDepthwise(Lowering& lowering, const GraphNode& node, const Geometry& geometry)
{
    const ValueIndex x = node.argument("x")->values.front();
    const ValueIndex output = node.outputs.front();
    const Shape& shape = lowering.graph().type(output).shape;
    const auto product = bandedInput(lowering, x);
    // A product's result lies channels last.
    const Shape& inputShape = lowering.graph().type(x).shape;
    const View input = product
        ? View { 0, ElementType::real, 0, inputShape, orderedStrides(inputShape, orderWithLast(inputShape.size(), 1)) }
        : channelsLast(lowering, x);
    const Argument* bias = node.argument("bias");
    const DepthwiseStep depthwise { depthwiseWeights(lowering, node.argument("weight")->values.front()),
        bias == nullptr ? std::nullopt : std::optional(lowering.denseView(bias->values.front())),
        lowering.newView(ElementType::real, shape, orderedStrides(shape, orderWithLast(shape.size(), 1))),
        windowOver(input, shape, geometry) };
    if (product)
        emitBanded(lowering, depthwise, *product);
    else
        emitDepthwise(lowering, depthwise, input);
    lowering.define(output, depthwise.to);
}

bool lowerConvolution(Lowering& lowering, const GraphNode& node)
{
    const Graph& graph = lowering.graph();
    const ValueIndex weight = node.argument("weight")->values.front();
    const Shape& shape = graph.type(weight).shape;
    if (!graph.isConstant(weight) || shape.size() < 3 || shape.size() > 5)
        return false;
    const Geometry geometry = geometryOf(graph.operandsOf(node));
    if (geometry.taps() > maximumTaps)
        return false;
    if (geometry.groups == 1) {
        lowerByProduct(lowering, node, geometry);
        return true;
    }
    const int64_t channels = graph.type(node.argument("x")->values.front()).shape[1];
    if (geometry.groups != channels || shape[0] != channels)
        return false;
    lowerDepthwise(lowering, node, geometry);
    return true;
}

constexpr LoweringRule rules[] = {
    { "conv", lowerConvolution },
};

} // namespace

std::span<const LoweringRule> convolutionRules() noexcept
{
    return rules;
}

} // namespace MLProgram
