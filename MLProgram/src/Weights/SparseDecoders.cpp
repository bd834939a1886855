// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Weights/DecoderOperands.h"
#include "Weights/ElementCopy.h"

#include <utility>

namespace MLProgram {

// `nonzero_data` holds the elements whose bit in `mask` is set; the others are 0. The older generation's mask is a
// vector of bytes, beside a `shape`; its bits lie as those of the newer one's 1-bit elements.
DecodedWeights sparseToDense(const DecoderOperands& operands)
{
    const Constant& mask = operands.constant("mask");
    const Constant& data = operands.constant("nonzero_data");
    const bool isOlder = operands.has("shape");
    const Shape shape = isOlder ? operands.shape("shape") : mask.shape();
    const auto maskSize = checkedByteCount(ScalarType::uint1, checkedElementCount(shape).value_or(0));
    operands.require(mask.scalarType() == (isOlder ? ScalarType::uint8 : ScalarType::uint1)
            && static_cast<int64_t>(mask.bytes().size()) == maskSize,
        "mask does not fit the shape");
    operands.require(!data.isText(), "nonzero_data is no number");

    std::vector<std::byte> bytes = operands.storage(0, data.scalarType(), shape);
    const ElementCopy element(data.scalarType(), data.bytes(), bytes);
    const auto count = static_cast<size_t>(elementCount(shape));
    size_t used = 0;
    for (size_t i = 0; i < count; ++i) {
        if (!isSet(mask, i))
            continue;
        operands.require(used < static_cast<size_t>(data.count()), "nonzero_data is shorter than the mask says");
        element.copy(used++, i);
    }
    operands.require(used == static_cast<size_t>(data.count()), "nonzero_data is longer than the mask says");
    return { Constant(data.scalarType(), shape, std::move(bytes)) };
}

} // namespace MLProgram
