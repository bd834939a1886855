// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations that put all elements of a tensor in another order.
#include "Operations/Definitions.h"
#include "Operations/Iteration.h"
#include "Operations/Numbers.h"

#include <array>

namespace MLProgram {

namespace {

using Order = boost::container::static_vector<size_t, maximumRank>;

// The tensor is read as if it had the shape `view`; dimension i of what is written is dimension order[i] of it.
struct Rearrangement {
    Shape view;
    Order order;
    Shape output;
};

Shape inOrder(const Shape& shape, const Order& order)
{
    Shape result;
    for (const size_t dimension : order)
        result.push_back(shape[dimension]);
    return result;
}

Rearrangement transposition(const Operands& operands)
{
    const Shape& shape = operands.tensor("x").type.shape;
    operands.require(operands.integers("perm").size() == shape.size()
            && axesOperand(operands, "perm", shape.size()).size() == shape.size(),
        "\"perm\" is not a permutation of its axes");
    Order order;
    for (const int32_t axis : operands.integers("perm"))
        order.push_back(normalisedAxis(operands, axis, shape.size()));
    return { shape, order, inOrder(shape, order) };
}

// Images: batch, channels, height, width.
struct Image {
    int64_t batch, channels, height, width;
};

Image imageOperand(const Operands& operands)
{
    const TensorView& x = operands.tensor("x");
    requireRank(operands, x, 4, 4);
    const Shape& shape = x.type.shape;
    return { shape[0], shape[1], shape[2], shape[3] };
}

int64_t factorOperand(const Operands& operands, std::string_view name)
{
    const int64_t factor = operands.integer(name);
    operands.require(factor >= 1, "its factor must be at least 1");
    return factor;
}

// Channels become pixels: each group of factor * factor channels is a block of the output, for one channel.
Rearrangement pixelShuffle(const Operands& operands)
{
    const auto [n, c, h, w] = imageOperand(operands);
    const int64_t f = factorOperand(operands, "upscale_factor");
    operands.require(c % (f * f) == 0, "its channels are not a multiple of the squared factor");
    return { { n, c / (f * f), f, f, h, w }, { 0, 1, 4, 2, 5, 3 }, { n, c / (f * f), h * f, w * f } };
}

Rearrangement pixelUnshuffle(const Operands& operands)
{
    const auto [n, c, h, w] = imageOperand(operands);
    const int64_t f = factorOperand(operands, "downscale_factor");
    operands.require(h % f == 0 && w % f == 0, "its height and width are not multiples of the factor");
    operands.require(f * f <= maximumElementCount, "its factor is too large");
    return { { n, c, h / f, f, w / f, f }, { 0, 1, 3, 5, 2, 4 }, { n, c * f * f, h / f, w / f } };
}

// As above, but the position within a block is the outer part of the channel number.
Rearrangement depthToSpace(const Operands& operands)
{
    const auto [n, c, h, w] = imageOperand(operands);
    const int64_t b = factorOperand(operands, "block_size");
    operands.require(c % (b * b) == 0, "its channels are not a multiple of the squared block size");
    return { { n, b, b, c / (b * b), h, w }, { 0, 3, 4, 1, 5, 2 }, { n, c / (b * b), h * b, w * b } };
}

Rearrangement spaceToDepth(const Operands& operands)
{
    const auto [n, c, h, w] = imageOperand(operands);
    const int64_t b = factorOperand(operands, "block_size");
    operands.require(h % b == 0 && w % b == 0, "its height and width are not multiples of the block size");
    operands.require(b * b <= maximumElementCount, "its block size is too large");
    return { { n, c, h / b, b, w / b, b }, { 0, 3, 5, 1, 2, 4 }, { n, c * b * b, h / b, w / b } };
}

template <Rearrangement (*rearrangement)(const Operands&)> TensorTypes infer(const Operands& operands)
{
    return { outputType(operands, operands.tensor("x").type.element, rearrangement(operands).output) };
}

template <Rearrangement (*rearrangement)(const Operands&)>
void evaluate(const Operands& operands, std::span<const TensorView> outputs)
{
    const auto [view, order, output] = rearrangement(operands);
    const Shape shape = inOrder(view, order);
    copyElements(shape, operands.tensor("x"), { 0, inOrder(rowMajorStrides(view), order) }, outputs[0],
        { 0, rowMajorStrides(shape) });
}

// Pixels of a padded image go to blocks.size images, each of which takes one pixel of every block. The same layout
// serves both ways: `image` is the one with the large pixels, cut by `margins` [top, bottom, left, right].
struct BatchLayout {
    Image image;
    int64_t blockHeight, blockWidth;
    std::array<int64_t, 4> margins;

    int64_t paddedHeight() const { return image.height + margins[0] + margins[1]; }
    int64_t paddedWidth() const { return image.width + margins[2] + margins[3]; }
    int64_t blockSize() const { return blockHeight * blockWidth; }
};

BatchLayout batchLayout(const Operands& operands, std::string_view marginsName)
{
    const auto block = operands.integers("block_shape");
    operands.require(block.size() == 2 && block[0] >= 1 && block[1] >= 1, "its blocks must have two sides");
    const TensorView& given = integerTensor(operands, marginsName);
    operands.require(given.count() == 4, "it needs two margins for each of two dimensions");
    if (!given.isKnown())
        throw ValueNotKnown {};
    BatchLayout layout { imageOperand(operands), block[0], block[1], {} };
    for (size_t i = 0; i < 4; ++i) {
        layout.margins[i] = given.integers()[i];
        operands.require(layout.margins[i] >= 0, "a margin is negative");
    }
    operands.require(layout.blockSize() <= maximumElementCount, "its blocks are too large");
    return layout;
}

BatchLayout spaceToBatch(const Operands& operands)
{
    const BatchLayout layout = batchLayout(operands, "paddings");
    operands.require(layout.paddedHeight() % layout.blockHeight == 0 && layout.paddedWidth() % layout.blockWidth == 0,
        "its padded height and width are not multiples of the block's");
    return layout;
}

BatchLayout batchToSpace(const Operands& operands)
{
    BatchLayout layout = batchLayout(operands, "crops");
    operands.require(layout.image.batch % layout.blockSize() == 0, "its batch is not a multiple of the block's size");
    layout.image.batch /= layout.blockSize();
    layout.image.height = layout.image.height * layout.blockHeight - layout.margins[0] - layout.margins[1];
    layout.image.width = layout.image.width * layout.blockWidth - layout.margins[2] - layout.margins[3];
    return layout;
}

TensorTypes inferSpaceToBatch(const Operands& operands)
{
    const BatchLayout layout = spaceToBatch(operands);
    return { outputType(operands, operands.tensor("x").type.element,
        { layout.image.batch * layout.blockSize(), layout.image.channels, layout.paddedHeight() / layout.blockHeight,
            layout.paddedWidth() / layout.blockWidth }) };
}

TensorTypes inferBatchToSpace(const Operands& operands)
{
    const auto [n, c, h, w] = batchToSpace(operands).image;
    return { outputType(operands, operands.tensor("x").type.element, { n, c, h, w }) };
}

// Where pixel (y, x) of channel c of image n stands among the small images of `shape`.
int64_t smallPixel(const BatchLayout& layout, const Shape& shape, int64_t n, int64_t c, int64_t y, int64_t x)
{
    const int64_t row = y + layout.margins[0];
    const int64_t column = x + layout.margins[2];
    const int64_t position = row % layout.blockHeight * layout.blockWidth + column % layout.blockWidth;
    const int64_t batch = position * layout.image.batch + n;
    return ((batch * shape[1] + c) * shape[2] + row / layout.blockHeight) * shape[3] + column / layout.blockWidth;
}

// Visits every pixel of the large image: its place there and among the small images.
template <typename Visit> void forEachPixel(const BatchLayout& layout, const Shape& small, Visit visit)
{
    int64_t large = 0;
    for (int64_t n = 0; n < layout.image.batch; ++n)
        for (int64_t c = 0; c < layout.image.channels; ++c)
            for (int64_t y = 0; y < layout.image.height; ++y)
                for (int64_t x = 0; x < layout.image.width; ++x)
                    visit(large++, smallPixel(layout, small, n, c, y, x));
}

void evaluateSpaceToBatch(const Operands& operands, std::span<const TensorView> outputs)
{
    withElementType(outputs[0].type.element, [&](auto zero) {
        const auto from = operands.tensor("x").values<const decltype(zero)>();
        const auto to = outputs[0].values<decltype(zero)>();
        std::ranges::fill(to, zero);
        forEachPixel(spaceToBatch(operands), outputs[0].type.shape,
            [&](int64_t large, int64_t small) { to[small] = from[large]; });
    });
}

void evaluateBatchToSpace(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    withElementType(x.type.element, [&](auto zero) {
        const auto from = x.values<const decltype(zero)>();
        const auto to = outputs[0].values<decltype(zero)>();
        forEachPixel(
            batchToSpace(operands), x.type.shape, [&](int64_t large, int64_t small) { to[large] = from[small]; });
    });
}

constexpr OperationDefinition definitions[] = {
    { "batch_to_space", inferBatchToSpace, evaluateBatchToSpace },
    { "depth_to_space", infer<depthToSpace>, evaluate<depthToSpace> },
    { "pixel_shuffle", infer<pixelShuffle>, evaluate<pixelShuffle> },
    { "pixel_unshuffle", infer<pixelUnshuffle>, evaluate<pixelUnshuffle> },
    { "space_to_batch", inferSpaceToBatch, evaluateSpaceToBatch },
    { "space_to_depth", infer<spaceToDepth>, evaluate<spaceToDepth> },
    { "transpose", infer<transposition>, evaluate<transposition> },
};

} // namespace

Definitions rearrangings() noexcept
{
    return definitions;
}

} // namespace MLProgram
