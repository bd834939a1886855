// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Program/ElementCodec.h"
#include "Weights/BlockGrid.h"
#include "Weights/DecoderOperands.h"
#include "Weights/ElementCopy.h"

#include <algorithm>
#include <array>
#include <utility>

namespace MLProgram {
namespace {

// Tables of values, one for each group of a weight: lut [G0, ..., Gk-1, entries, V], where the weight of rank k is
// divided into G0 * ... groups, and an index stands for V values that follow each other along one axis.
struct Tables {
    const Constant& lut;
    BlockGrid groups;
    size_t entries;
    size_t vectorLength;
    size_t vectorAxis;

    // Row-major index in `lut` of the first value that `index`, at this place of the weight, stands for.
    size_t firstValue(size_t place, int32_t index) const noexcept
    {
        return (groups.blockOf(place) * entries + static_cast<size_t>(index)) * vectorLength;
    }
};

// `shape` is that of the indices.
Tables readTables(const DecoderOperands& operands, ScalarType indexType, const Shape& shape)
{
    const Constant& lut = operands.constant("lut");
    const bool isUnsigned = isInteger(indexType) && !isSigned(indexType) && bitsOf(indexType) <= 8;
    operands.require(isUnsigned, "the indices have a type that is not supported");
    operands.require(!lut.isText() && lut.shape().size() == shape.size() + 2, "lut does not fit the indices");
    const Shape groups(lut.shape().begin(), lut.shape().end() - 2);
    const int64_t entries = lut.shape()[shape.size()];
    const int64_t vectorLength = lut.shape().back();
    operands.require(
        BlockGrid::divides(groups, shape) && entries == int64_t { 1 } << bitsOf(indexType) && vectorLength >= 1,
        "lut does not fit the indices");
    const size_t vectorAxis = vectorLength == 1 ? 0 : operands.axis("vector_axis", shape.size());
    return { lut, BlockGrid(groups, shape), static_cast<size_t>(entries), static_cast<size_t>(vectorLength),
        vectorAxis };
}

// The shape of the decoded weight: longer than that of the indices along the vectors' axis.
Shape decodedShape(const DecoderOperands& operands, const Tables& tables, Shape shape)
{
    if (tables.vectorLength == 1)
        return shape;
    int64_t& dimension = shape[tables.vectorAxis];
    operands.require(!__builtin_mul_overflow(dimension, static_cast<int64_t>(tables.vectorLength), &dimension)
            && dimension <= maximumElementCount,
        "the output has too many elements");
    return shape;
}

// Where the elements of a decoded weight come from.
class DecodedPlaces {
public:
    DecodedPlaces(const Tables& tables, const Shape& shape)
        : vectorLength_(tables.vectorLength)
    {
        for (size_t i = tables.vectorAxis + 1; i < shape.size(); ++i)
            inner_ *= static_cast<size_t>(shape[i]);
    }

    // Row-major place among the indices of a decoded element, and which of its index's values that element is.
    std::pair<size_t, size_t> source(size_t decoded) const noexcept
    {
        if (vectorLength_ == 1)
            return { decoded, 0 };
        const size_t along = decoded / inner_; // dimensions up to the vectors' axis, flattened
        return { along / vectorLength_ * inner_ + decoded % inner_, along % vectorLength_ };
    }

private:
    size_t vectorLength_;
    size_t inner_ = 1;
};

int32_t indexAt(ScalarType type, std::span<const std::byte> packed, size_t place)
{
    int32_t index = 0;
    readIntegers(type, packed, place, { &index, 1 });
    return index;
}

// One table for all; the indices are bytes that hold as many bits an index as the table needs.
DecodedWeights olderLutToDense(const DecoderOperands& operands)
{
    struct Width {
        int64_t entries;
        ScalarType type;
    };
    constexpr std::array widths {
        Width { 2, ScalarType::uint1 },
        Width { 4, ScalarType::uint2 },
        Width { 16, ScalarType::uint4 },
        Width { 64, ScalarType::uint6 },
        Width { 256, ScalarType::uint8 },
    };
    const Constant& lut = operands.constant("lut");
    const Constant& indices = operands.constant("indices");
    const Shape shape = operands.shape("shape");
    const auto width = std::find_if(
        widths.begin(), widths.end(), [&](const Width& candidate) { return candidate.entries == lut.count(); });
    operands.require(!lut.isText() && width != widths.end(), "lut has a number of entries that is not supported");
    const auto size = checkedByteCount(width->type, checkedElementCount(shape).value_or(0));
    operands.require(
        indices.scalarType() == ScalarType::uint8 && indices.count() == size, "indices do not fit the shape");

    std::vector<std::byte> bytes = operands.storage(0, lut.scalarType(), shape);
    const ElementCopy element(lut.scalarType(), lut.bytes(), bytes);
    const auto count = static_cast<size_t>(elementCount(shape));
    for (size_t i = 0; i < count; ++i)
        element.copy(static_cast<size_t>(indexAt(width->type, indices.bytes(), i)), i);
    return { Constant(lut.scalarType(), shape, std::move(bytes)) };
}

// For each place among the indices how many set bits of the mask stand before it.
std::vector<uint32_t> ordinals(const Constant& mask)
{
    std::vector<uint32_t> before(static_cast<size_t>(mask.count()));
    uint32_t count = 0;
    for (size_t i = 0; i < before.size(); ++i) {
        before[i] = count;
        count += isSet(mask, i) ? 1 : 0;
    }
    return before;
}

size_t countSet(const Constant& mask)
{
    size_t count = 0;
    for (size_t i = 0; i < static_cast<size_t>(mask.count()); ++i)
        count += isSet(mask, i) ? 1 : 0;
    return count;
}

} // namespace

DecodedWeights lutToDense(const DecoderOperands& operands)
{
    if (operands.has("shape"))
        return olderLutToDense(operands);
    const Constant& indices = operands.constant("indices");
    const Tables tables = readTables(operands, indices.scalarType(), indices.shape());
    const Shape shape = decodedShape(operands, tables, indices.shape());
    const ScalarType type = tables.lut.scalarType();

    std::vector<std::byte> bytes = operands.storage(0, type, shape);
    const ElementCopy element(type, tables.lut.bytes(), bytes);
    const DecodedPlaces places(tables, indices.shape());
    const auto count = static_cast<size_t>(elementCount(shape));
    for (size_t i = 0; i < count; ++i) {
        const auto [place, offset] = places.source(i);
        const int32_t index = indexAt(indices.scalarType(), indices.bytes(), place);
        element.copy(tables.firstValue(place, index) + offset, i);
    }
    return { Constant(type, shape, std::move(bytes)) };
}

// As lutToDense(), of a sparse weight: the mask of the decoded weight, and its values in row-major order.
DecodedWeights lutToSparse(const DecoderOperands& operands)
{
    const Constant& mask = operands.constant("indices_mask");
    const Constant& indices = operands.constant("indices_nonzero_data");
    operands.require(mask.scalarType() == ScalarType::uint1, "indices_mask is no mask");
    const Tables tables = readTables(operands, indices.scalarType(), mask.shape());
    const Shape shape = decodedShape(operands, tables, mask.shape());
    operands.require(
        countSet(mask) == static_cast<size_t>(indices.count()), "the mask does not fit indices_nonzero_data");
    const ScalarType type = tables.lut.scalarType();
    const auto valueCount = indices.count() * static_cast<int64_t>(tables.vectorLength);

    std::vector<std::byte> decodedMask = operands.storage(0, ScalarType::uint1, shape);
    std::vector<std::byte> values = operands.storage(1, type, Shape { valueCount });
    const ElementCopy element(type, tables.lut.bytes(), values);
    const DecodedPlaces places(tables, mask.shape());
    const std::vector<uint32_t> before = ordinals(mask);
    size_t used = 0;
    for (size_t i = 0; i < static_cast<size_t>(elementCount(shape)); ++i) {
        const auto [place, offset] = places.source(i);
        if (!isSet(mask, place))
            continue;
        decodedMask[i / 8] |= static_cast<std::byte>(1U << (i % 8));
        const int32_t index = indexAt(indices.scalarType(), indices.bytes(), before[place]);
        element.copy(tables.firstValue(place, index) + offset, used++);
    }
    return { Constant(ScalarType::uint1, shape, std::move(decodedMask)),
        Constant(type, { valueCount }, std::move(values)) };
}

} // namespace MLProgram
