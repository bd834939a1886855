// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Program/ElementCodec.h"
#include "Weights/BlockGrid.h"
#include "Weights/DecoderOperands.h"
#include "Weights/ElementCopy.h"

#include <algorithm>
#include <utility>

namespace MLProgram {
namespace {

// Elements that are held in 32 bits at a time.
constexpr size_t pieceLength = 1024;

// scale * (value - offset) for stored values that follow each other.
class ScaledCopy {
public:
    ScaledCopy(const Constant& from, ScalarType type, std::span<std::byte> to)
        : from_(from)
        , type_(type)
        , to_(to)
        , elementSize_(bitsOf(type) / 8)
        , piece_(std::min<size_t>(pieceLength, static_cast<size_t>(from.count())))
    {
    }

    void run(size_t first, size_t count, float scale, float offset)
    {
        while (count > 0) {
            const std::span<float> piece(piece_.data(), std::min(count, piece_.size()));
            readReals(from_.scalarType(), from_.bytes(), first, piece);
            for (float& value : piece)
                value = scale * (value - offset);
            writeReals(type_, piece, to_.subspan(first * elementSize_));
            first += piece.size();
            count -= piece.size();
        }
    }

private:
    const Constant& from_;
    ScalarType type_;
    std::span<std::byte> to_;
    size_t elementSize_;
    std::vector<float> piece_;
};

ScalarType scaleType(const DecoderOperands& operands)
{
    const ScalarType type = operands.constant("scale").scalarType();
    operands.require(isFloatingPoint(type) && bitsOf(type) >= 16, "scale is of a type that is not supported");
    return type;
}

// The offsets of blocks; zeros when there are none.
std::vector<float> blockOffsets(const DecoderOperands& operands, size_t count)
{
    if (!operands.has("offset"))
        return std::vector<float>(count, 0.0F);
    operands.require(operands.constant("offset").shape() == operands.constant("scale").shape(),
        "offset has another shape than scale");
    return operands.reals("offset");
}

} // namespace

// scale and zero_point are scalars or run along `axis`.
DecodedWeights affineDequantize(const DecoderOperands& operands)
{
    const Constant& data = operands.constant("quantized_data");
    const ScalarType type = scaleType(operands);
    const std::vector<float> scale = operands.reals("scale");
    const std::vector<float> zero = operands.has("zero_point") ? operands.reals("zero_point") : std::vector { 0.0F };
    operands.require(!data.isText(), "quantized_data is no number");
    const size_t channels = std::max(scale.size(), zero.size());
    const size_t axis = channels == 1 ? 0 : operands.axis("axis", data.shape().size());
    const bool fits = channels == 1 || static_cast<int64_t>(channels) == data.shape()[axis];
    operands.require(
        fits && (scale.size() == channels || scale.size() == 1) && (zero.size() == channels || zero.size() == 1),
        "scale and zero_point do not fit quantized_data");

    std::vector<std::byte> bytes = operands.storage(0, type, data.shape());
    ScaledCopy copy(data, type, bytes);
    const auto count = static_cast<size_t>(data.count());
    const auto inner = channels == 1
        ? count
        : static_cast<size_t>(elementCount(std::span<const int64_t>(data.shape()).subspan(axis + 1)));
    for (size_t first = 0, run = 0; first < count; first += inner, ++run) {
        const size_t channel = run % channels;
        copy.run(first, inner, scale[scale.size() == 1 ? 0 : channel], zero[zero.size() == 1 ? 0 : channel]);
    }
    return { Constant(type, data.shape(), std::move(bytes)) };
}

DecodedWeights blockwiseShiftScale(const DecoderOperands& operands)
{
    const Constant& data = operands.constant("data");
    const Shape& blocks = operands.constant("scale").shape();
    const ScalarType type = scaleType(operands);
    operands.require(!data.isText() && BlockGrid::divides(blocks, data.shape()), "scale does not divide data");
    const std::vector<float> scale = operands.reals("scale");
    const std::vector<float> offset = blockOffsets(operands, scale.size());

    std::vector<std::byte> bytes = operands.storage(0, type, data.shape());
    ScaledCopy copy(data, type, bytes);
    const BlockGrid grid(blocks, data.shape());
    const auto count = static_cast<size_t>(data.count());
    for (size_t first = 0; first < count; first += grid.runLength()) {
        const size_t block = grid.blockOf(first);
        copy.run(first, grid.runLength(), scale[block], offset[block]);
    }
    return { Constant(type, data.shape(), std::move(bytes)) };
}

// As blockwiseShiftScale(), of those elements only whose bit in `data_mask` is set.
DecodedWeights sparseBlockwiseShiftScale(const DecoderOperands& operands)
{
    const Constant& mask = operands.constant("data_mask");
    const Constant& data = operands.constant("nonzero_data");
    const Shape& blocks = operands.constant("scale").shape();
    const ScalarType type = scaleType(operands);
    operands.require(mask.scalarType() == ScalarType::uint1 && !data.isText(), "data_mask is no mask");
    operands.require(BlockGrid::divides(blocks, mask.shape()), "scale does not divide data_mask");
    const std::vector<float> scale = operands.reals("scale");
    const std::vector<float> offset = blockOffsets(operands, scale.size());

    operands.storage(0, ScalarType::uint1, mask.shape());
    std::vector<std::byte> bytes = operands.storage(1, type, data.shape());
    ScaledCopy copy(data, type, bytes);
    const BlockGrid grid(blocks, mask.shape());
    size_t used = 0;
    for (size_t i = 0; i < static_cast<size_t>(mask.count()); ++i) {
        if (!isSet(mask, i))
            continue;
        operands.require(used < static_cast<size_t>(data.count()), "nonzero_data is shorter than the mask says");
        const size_t block = grid.blockOf(i);
        copy.run(used++, 1, scale[block], offset[block]);
    }
    operands.require(used == static_cast<size_t>(data.count()), "nonzero_data is longer than the mask says");
    return { mask, Constant(type, data.shape(), std::move(bytes)) };
}

DecodedWeights cast(const DecoderOperands& operands)
{
    const Constant& source = operands.constant("source_val");
    const auto type = scalarTypeNamed(operands.constant("output_dtype").text());
    operands.require(isFloatingPoint(source.scalarType()) && type && isFloatingPoint(*type) && bitsOf(*type) >= 16,
        "only floating-point types are cast");
    std::vector<std::byte> bytes = operands.storage(0, *type, source.shape());
    ScaledCopy(source, *type, bytes).run(0, static_cast<size_t>(source.count()), 1.0F, 0.0F);
    return { Constant(*type, source.shape(), std::move(bytes)) };
}

} // namespace MLProgram
