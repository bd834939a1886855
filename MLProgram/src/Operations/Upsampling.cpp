// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// The repetition of pixels.
#include "Operations/Definitions.h"
#include "Operations/Shapes.h"

#include <algorithm>
#include <cmath>

namespace MLProgram {

namespace {

// Rows and columns are the last two dimensions.
struct Scales {
    float height, width;
};

Scales scalesOf(const Operands& operands)
{
    const Scales scales { operands.real("scale_factor_height", 1), operands.real("scale_factor_width", 1) };
    operands.require(
        std::isfinite(scales.height) && scales.height > 0 && std::isfinite(scales.width) && scales.width > 0,
        "its scale factors must be positive");
    return scales;
}

int64_t scaled(const Operands& operands, int64_t size, float scale)
{
    const double length = std::floor(static_cast<double>(size) * scale);
    operands.require(length <= static_cast<double>(maximumElementCount), "its output is too large");
    return static_cast<int64_t>(length);
}

TensorTypes inferUpsample(const Operands& operands)
{
    const TensorView& x = realTensor(operands, "x");
    requireRank(operands, x, 2);
    const Scales scales = scalesOf(operands);
    Shape shape = x.type.shape;
    int64_t& height = shape[shape.size() - 2];
    height = scaled(operands, height, scales.height);
    shape.back() = scaled(operands, shape.back(), scales.width);
    return { outputType(operands, ElementType::real, shape) };
}

void evaluateUpsample(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const auto [verticalScale, horizontalScale] = scalesOf(operands);
    const size_t rank = x.type.shape.size();
    const int64_t height = x.type.shape[rank - 2];
    const int64_t width = x.type.shape[rank - 1];
    const auto nearest = [](int64_t at, float scale, int64_t size) {
        return std::min(static_cast<int64_t>(static_cast<double>(at) / scale), size - 1);
    };
    const float* from = x.reals().data();
    float* to = outputs[0].reals().data();
    for (int64_t image = 0; image < countBetween(x.type.shape, 0, rank - 2); ++image, from += height * width)
        for (int64_t row = 0; row < outputs[0].type.shape[rank - 2]; ++row)
            for (int64_t column = 0; column < outputs[0].type.shape[rank - 1]; ++column)
                *to++ = from[nearest(row, verticalScale, height) * width + nearest(column, horizontalScale, width)];
}

constexpr OperationDefinition definitions[] = {
    { "upsample_nearest_neighbor", inferUpsample, evaluateUpsample },
};

} // namespace

Definitions upsamplings() noexcept
{
    return definitions;
}

} // namespace MLProgram
