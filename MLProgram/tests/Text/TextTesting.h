// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/ElementCodec.h"
#include "Text/Literal.h"
#include "Text/ProgramReader.h"

#include <MLProgram/MLModelError.h>

#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace MLProgram {

// Gives zeros of whatever type is asked for, and remembers what was.
class ZeroWeights final : public WeightSource {
public:
    Constant read(std::string_view path, uint64_t offset, ScalarType type, const Shape& shape) override
    {
        requests.emplace_back(path, offset);
        const auto bytes = checkedByteCount(type, checkedElementCount(shape).value()).value();
        return { type, shape, std::vector<std::byte>(static_cast<size_t>(bytes)) };
    }

    std::vector<std::pair<std::string, uint64_t>> requests;
};

// A program with one function that has these parameters and this body.
inline std::string mainFunction(const std::string& parameters, const std::string& body, const std::string& outputs = "")
{
    return "program(1.3)\n{ func main<ios17>(" + parameters + ") {\n" + body + "\n} -> (" + outputs + ");\n}";
}

inline Program read(const std::string& text)
{
    ZeroWeights weights;
    return readProgram(text, weights);
}

inline Literal literal(const std::string& text)
{
    TokenStream stream(text);
    ZeroWeights weights;
    return readLiteral(stream, weights);
}

inline std::vector<float> reals(const Constant& constant)
{
    std::vector<float> values(static_cast<size_t>(constant.count()));
    readReals(constant.scalarType(), constant.bytes(), 0, values);
    return values;
}

// The stored bits of the one element of a 16-bit literal.
inline uint16_t bits16(const std::string& text)
{
    uint16_t bits = 0;
    std::memcpy(&bits, literal(text).constant->bytes().data(), sizeof(bits));
    return bits;
}

// What an error says that `action` throws; "no error" when there is none.
inline std::string errorOf(const std::function<void()>& action, MLModelError::Case which)
{
    try {
        action();
    } catch (const MLModelError& error) {
        return error.which() == which ? error.description() : "another case: " + error.description();
    }
    return "no error";
}

inline std::string faultOf(const std::string& text)
{
    return errorOf([&] { read(text); }, MLModelError::Case::invalidProgram);
}

inline std::string faultOfLiteral(const std::string& text)
{
    return errorOf([&] { literal(text); }, MLModelError::Case::invalidProgram);
}

} // namespace MLProgram
