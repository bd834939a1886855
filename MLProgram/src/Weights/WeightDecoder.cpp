// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Weights/WeightDecoder.h"

#include "Weights/DecoderOperands.h"

#include <MLProgram/MLModelError.h>

#include <algorithm>
#include <array>
#include <new>

namespace MLProgram {
namespace {

struct Decoder {
    std::string_view name;
    DecodedWeights (*decode)(const DecoderOperands& operands);
};

constexpr std::array decoders {
    Decoder { "constexpr_affine_dequantize", affineDequantize },
    Decoder { "constexpr_blockwise_shift_scale", blockwiseShiftScale },
    Decoder { "constexpr_cast", cast },
    Decoder { "constexpr_lut_to_dense", lutToDense },
    Decoder { "constexpr_lut_to_sparse", lutToSparse },
    Decoder { "constexpr_sparse_blockwise_shift_scale", sparseBlockwiseShiftScale },
    Decoder { "constexpr_sparse_to_dense", sparseToDense },
};

const Decoder* findDecoder(std::string_view name) noexcept
{
    const auto found
        = std::find_if(decoders.begin(), decoders.end(), [&](const Decoder& decoder) { return decoder.name == name; });
    return found == decoders.end() ? nullptr : &*found;
}

} // namespace

bool isWeightDecoder(std::string_view operation) noexcept
{
    return findDecoder(operation) != nullptr;
}

std::vector<Constant> decodeWeights(
    const Function& function, const Operation& operation, const std::function<const Constant&(ValueIndex)>& constantOf)
{
    const DecoderOperands operands(function, operation, constantOf);
    try {
        DecodedWeights outputs = findDecoder(operation.name)->decode(operands);
        operands.require(outputs.size() == operation.outputs.size(), "too many outputs are declared");
        return outputs;
    } catch (const std::bad_alloc&) {
        throw MLModelError(MLModelError::Case::outOfMemory, "there is not enough memory for the weights");
    }
}

} // namespace MLProgram
