// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

Tensor quantized(Tensor input, Argument scale, const Arguments& more = {})
{
    Arguments arguments = { { "input", std::move(input) }, { "scale", std::move(scale) } };
    arguments.insert(arguments.end(), more.begin(), more.end());
    return evaluate("quantize", arguments);
}

} // namespace

TEST(Quantization, DividesByTheScaleAndRoundsHalvesToEven)
{
    EXPECT_THAT(quantized(reals({ 1, 1.5f, 2.5f, -3.1f }), 1.0f, { { "output_dtype", "int8" } }),
        equals(integers({ 1, 2, 2, -3 })));
    EXPECT_THAT(quantized(reals({ 1, -1 }), 0.25f, { { "output_dtype", "int8" } }), equals(integers({ 4, -4 })));
}

TEST(Quantization, AddsTheZeroPointAndStaysInRange)
{
    const Arguments toUnsigned = { { "zero_point", 128 }, { "output_dtype", "uint8" } };
    EXPECT_THAT(
        quantized(reals({ 0, 1, 500, -500, infinity }), 1.0f, toUnsigned), equals(integers({ 128, 129, 255, 0, 255 })));
    EXPECT_THAT(quantized(reals({ 500, -500, -infinity }), 1.0f, { { "output_dtype", "int8" } }),
        equals(integers({ 127, -128, -128 })));
    EXPECT_THAT(quantized(reals({ 1, 0, -1 }), 0.0f), equals(integers({ 127, 0, -128 })));
}

TEST(Quantization, TakesAScaleForEachPositionAlongAnAxis)
{
    const Tensor x = reals({ 2, 2 }, { 1, 2, 3, 4 });
    EXPECT_THAT(quantized(x, reals({ 1, 0.5f }), { { "axis", 0 }, { "output_dtype", "int8" } }),
        equals(integers({ 2, 2 }, { 1, 2, 6, 8 })));
    EXPECT_THAT(quantized(x, reals({ 1, 0.5f }),
                    { { "axis", -1 }, { "zero_point", integers({ 10, 20 }) }, { "output_dtype", "int8" } }),
        equals(integers({ 2, 2 }, { 11, 24, 13, 28 })));
}

TEST(Quantization, DequantizingIsTheWayBack)
{
    EXPECT_THAT(
        evaluate("dequantize", { { "input", integers({ 4, -4 }) }, { "scale", 0.25f } }), equals(reals({ 1, -1 })));
    EXPECT_THAT(evaluate("dequantize", { { "input", integers({ 4, 255 }) }, { "scale", 2.0f }, { "zero_point", 5 } }),
        equals(reals({ -2, 500 })));
    EXPECT_THAT(evaluate("dequantize",
                    { { "input", integers({ 2, 2 }, { 1, 2, 3, 4 }) }, { "scale", reals({ 1, 10 }) },
                        { "zero_point", integers({ 1, 0 }) }, { "axis", 1 } }),
        equals(reals({ 2, 2 }, { 0, 20, 2, 40 })));
    EXPECT_THAT(evaluate("dequantize", { { "input", INT32_MIN }, { "scale", 1.0f }, { "zero_point", INT32_MAX } }),
        equals(reals({}, { -4294967295.0f })));
}

TEST(Quantization, TakesEmptyTensors)
{
    EXPECT_THAT(quantized(reals({ 0 }, {}), 1.0f), equals(integers({ 0 }, {})));
    EXPECT_THAT(quantized(reals({ 0, 2 }, {}), reals({ 0 }, {}), { { "axis", 0 } }), equals(integers({ 0, 2 }, {})));
}

TEST(Quantization, RefusesOperandsThatDoNotFit)
{
    const auto refused = [](Argument input, Argument scale, const Arguments& more) {
        Arguments arguments = { { "input", std::move(input) }, { "scale", std::move(scale) } };
        arguments.insert(arguments.end(), more.begin(), more.end());
        return refusal("quantize", arguments);
    };
    EXPECT_THAT(refused(1, 1.0f, {}), HasSubstr("real numbers"));
    EXPECT_THAT(refused(1.0f, 1, {}), HasSubstr("real numbers"));
    EXPECT_THAT(refused(1.0f, 1.0f, { { "output_dtype", "fp32" } }), HasSubstr("integer"));
    EXPECT_THAT(refused(1.0f, 1.0f, { { "zero_point", integers({ 1, 2 }) } }), HasSubstr("\"zero_point\""));
    EXPECT_THAT(refused(reals({ 1, 2 }), reals({ 1, 2 }), {}), HasSubstr("\"axis\" is missing"));
    EXPECT_THAT(refused(reals({ 1, 2 }), reals({ 1, 2, 3 }), { { "axis", 0 } }), HasSubstr("\"scale\""));
    EXPECT_THAT(refused(reals({ 1, 2 }), reals({ 1, 2 }), { { "axis", 1 } }), HasSubstr("axis 1"));
    EXPECT_THAT(refusal("dequantize", { { "input", 1.0f }, { "scale", 1.0f } }), HasSubstr("integers"));
}
