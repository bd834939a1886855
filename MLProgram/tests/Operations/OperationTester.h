// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Operations/Operation.h"

#include <MLProgram/MLModelError.h>

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <utility>
#include <variant>
#include <vector>

// A small language for worked examples of operations:
//
//     EXPECT_THAT(evaluate("add", { { "x", reals({ 2 }, { 1, 2 }) }, { "y", 10.0f } }), equals(reals({ 2 }, { 11, 12
//     }))); EXPECT_THAT(refusal("add", { { "x", 1.0f }, { "y", 1 } }), HasSubstr("one type"));
namespace MLProgram {

Tensor reals(const Shape& shape, const std::vector<float>& values);
Tensor integers(const Shape& shape, const std::vector<int32_t>& values);
Tensor booleans(const Shape& shape, const std::vector<int>& values);

// Vectors.
Tensor reals(const std::vector<float>& values);
Tensor integers(const std::vector<int32_t>& values);
Tensor booleans(const std::vector<int>& values);

// 0, 1, 2, ... as reals.
Tensor counting(const Shape& shape);

using List = std::vector<Tensor>;

// A value of an argument: a tensor, a list, a text, or a number that stands for a scalar.
struct Argument {
    Argument(Tensor tensor)
        : value(std::move(tensor))
    {
    }
    Argument(List list)
        : value(std::move(list))
    {
    }
    Argument(const char* text)
        : value(std::string(text))
    {
    }
    Argument(float number)
        : value(reals({}, { number }))
    {
    }
    Argument(int number)
        : value(integers({}, { number }))
    {
    }
    Argument(bool flag)
        : value(booleans({}, { flag }))
    {
    }

    std::variant<Tensor, List, std::string> value;
};

using Arguments = std::vector<std::pair<std::string, Argument>>;

// Evaluates the operation and gives all its outputs, or the first. The outputs hold garbage before; the operation is
// run a second time, and a test fails when that run allocates memory.
std::vector<Tensor> evaluateAll(const std::string& operation, const Arguments& arguments, int opset = 17);
Tensor evaluate(const std::string& operation, const Arguments& arguments, int opset = 17);

// The words with which shape inference refuses the operands; empty when it does not.
std::string refusal(const std::string& operation, const Arguments& arguments, int opset = 17);

// True when shape inference asks for the values of the operand `unknown`, of which only the type is told.
bool needsValue(const std::string& operation, const Arguments& arguments, const std::string& unknown);

// Same type and same values; reals may differ by `tolerance`, relative to the larger of 1 and the expected value.
bool isClose(const Tensor& actual, const Tensor& expected, float tolerance);
std::string describe(const Tensor& tensor);
void PrintTo(const Tensor& tensor, std::ostream* out);

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

constexpr float exact = 0;
constexpr float rounding = 2e-6f;

MATCHER_P2(isWithin, tolerance, expected, "is " + describe(expected))
{
    return isClose(arg, expected, tolerance);
}

inline auto equals(const Tensor& expected)
{
    return isWithin(exact, expected);
}

inline auto isNear(const Tensor& expected)
{
    return isWithin(rounding, expected);
}

} // namespace MLProgram
