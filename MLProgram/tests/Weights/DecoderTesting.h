// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Text/TextTesting.h"
#include "Weights/WeightDecoder.h"

#include <optional>
#include <string>
#include <vector>

namespace MLProgram {

// Runs the decoders of a function's body one after the other; gives the outputs of the last.
inline std::vector<Constant> decode(const std::string& body)
{
    const Program program = read(mainFunction("", body));
    const Function& function = program.functions.front();
    std::vector<std::optional<Constant>> constants;
    for (const Value& value : function.values)
        constants.push_back(value.constant);
    std::vector<Constant> outputs;
    for (const Operation& operation : function.operations) {
        outputs = decodeWeights(
            function, operation, [&](ValueIndex value) -> const Constant& { return constants[value].value(); });
        for (size_t i = 0; i < outputs.size(); ++i)
            constants[operation.outputs[i]] = outputs[i];
    }
    return outputs;
}

inline std::vector<float> decodedReals(const std::string& body)
{
    return reals(decode(body).front());
}

inline std::string faultOfDecoding(const std::string& body)
{
    return errorOf([&] { decode(body); }, MLModelError::Case::invalidProgram);
}

} // namespace MLProgram
