// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Description/CompleteDescription.h"
#include "Program/SupportCheck.h"
#include "Text/ProgramReader.h"
#include "Weights/WeightDecoder.h"

#include <MLProgram/MLModelError.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

using namespace MLProgram;

namespace {

// Larger values than these would only measure the memory of the machine.
constexpr int64_t largestValue = 1 << 16;

// Gives zeros, so that every reference to a stored value is sound.
class ZeroWeights final : public WeightSource {
public:
    Constant read(std::string_view, uint64_t, ScalarType type, const Shape& shape) override
    {
        const auto count = checkedElementCount(shape);
        if (!count || *count > largestValue)
            throw MLModelError(MLModelError::Case::invalidProgram, "the value is too large for this test");
        return { type, shape, std::vector<std::byte>(static_cast<size_t>(*checkedByteCount(type, *count))) };
    }
};

bool isSmall(const Function& function)
{
    for (const Value& value : function.values) {
        int64_t count = 1;
        for (const int64_t dimension : value.type.shape) {
            if (__builtin_mul_overflow(count, dimension, &count) || count < 0 || count > largestValue)
                return false;
        }
    }
    return true;
}

void describeAndDecode(const Function& function)
{
    checkSupport(function);
    completeDescription(function, nullptr);
    std::vector<std::optional<Constant>> constants;
    for (const Value& value : function.values)
        constants.push_back(value.constant);
    for (const Operation& operation : function.operations) {
        if (!isWeightDecoder(operation.name))
            continue;
        const auto outputs = decodeWeights(function, operation, [&](ValueIndex value) -> const Constant& {
            if (!constants[value])
                throw MLModelError(MLModelError::Case::invalidProgram, "not constant");
            return *constants[value];
        });
        for (size_t i = 0; i < outputs.size(); ++i)
            constants[operation.outputs[i]] = outputs[i];
    }
}

} // namespace

// A program text is read or refused, its functions are described, its weights decoded.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ZeroWeights weights;
    try {
        const Program program = readProgram({ reinterpret_cast<const char*>(data), size }, weights);
        for (const Function& function : program.functions) {
            if (isSmall(function))
                describeAndDecode(function);
        }
    } catch (const MLModelError&) { // refused, as it should be
    }
    return 0;
}
