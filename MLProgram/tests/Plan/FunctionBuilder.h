// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Program.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace MLProgram {

// Writes a function for a test, statement by statement; output types are inferred.
class FunctionBuilder {
public:
    using Arguments = std::vector<std::pair<std::string, std::vector<ValueIndex>>>;

    ValueIndex input(const Shape& shape, ScalarType type = ScalarType::float32);

    // Constants. Real values are random 16-bit floats of about the given size.
    ValueIndex weight(const Shape& shape, float size = 1.0f);
    ValueIndex number(float value);
    ValueIndex integer(int32_t value);
    ValueIndex integers(const std::vector<int32_t>& values);
    ValueIndex flag(bool value);
    ValueIndex text(std::string value);

    // The first output. Errors: MLModelError when the operands do not fit.
    ValueIndex add(std::string operation, Arguments arguments);
    std::vector<ValueIndex> addWithOutputs(std::string operation, Arguments arguments);

    const Shape& shape(ValueIndex value) const { return function_.values[value].type.shape; }

    Function finish(std::vector<ValueIndex> outputs);

private:
    ValueIndex addConstant(Constant constant);

    Function function_;
    unsigned nextSeed_ = 1;
};

} // namespace MLProgram
