// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/KernelTesting.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace MLProgram {

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

class KernelSetTest : public EveryKernelSet { };
INSTANTIATE_TEST_SUITE_P(, KernelSetTest, ::testing::ValuesIn(allKernelsOfThisProcessor()), kernelSetName);

// Distance in units of the last place; infinities and NaN are apart from all but themselves.
int64_t distance(float a, float b)
{
    if (std::isnan(a) || std::isnan(b))
        return std::isnan(a) && std::isnan(b) ? 0 : std::numeric_limits<int64_t>::max();
    const auto ordered = [](float x) {
        const auto bits = static_cast<int64_t>(std::bit_cast<uint32_t>(x) & 0x7FFF'FFFFu);
        return std::signbit(x) ? -bits : bits;
    };
    return std::abs(ordered(a) - ordered(b));
}

std::vector<float> apply(const KernelSet& kernels, RowOperation operation, const std::vector<float>& a,
    const std::vector<float>& b = {}, const std::vector<float>& c = {})
{
    std::vector<float> result(a.size());
    const auto operand = [](const std::vector<float>& values) {
        return values.empty() ? RowOperand {} : RowOperand { values.data(), false };
    };
    kernels.rowInstruction(
        { operation, operand(a), operand(b), operand(c), result.data(), static_cast<int64_t>(a.size()) });
    return result;
}

std::vector<float> interestingValues()
{
    std::vector<float> values { 0.0f, -0.0f, 1.0f, -1.0f, 0.624f, 0.626f, 88.0f, 88.7f, 88.8f, 200.0f, -87.0f, -95.0f,
        -103.0f, -104.5f, -200.0f, infinity, -infinity, notANumber, 1e-30f, -1e-30f, 1e-42f, 20.0f, -20.0f };
    const std::vector<float> spread = randomValues(500, 3, 12.0f);
    values.insert(values.end(), spread.begin(), spread.end());
    return values;
}

// Absent in the reference's own arithmetic are subnormal results, so their last places are not compared.
bool isComparable(float expected)
{
    return std::isnan(expected) || expected == 0 || std::fabs(expected) >= std::numeric_limits<float>::min();
}

TEST_P(KernelSetTest, ApproximatesTranscendentalFunctionsToFourUnits)
{
    const std::vector<float> x = interestingValues();
    using enum RowOperation;
    for (const RowOperation operation : { exponential, sigmoid, silu, tangentHyperbolic, logarithm, errorFunction }) {
        const std::vector<float> actual = apply(kernels(), operation, x);
        const std::vector<float> expected = apply(referenceKernels(), operation, x);
        for (size_t i = 0; i < x.size(); ++i) {
            if (isComparable(expected[i]))
                EXPECT_LE(distance(actual[i], expected[i]), 4)
                    << static_cast<int>(operation) << " of " << x[i] << ": " << actual[i] << ", not " << expected[i];
            else
                EXPECT_NEAR(actual[i], expected[i], std::numeric_limits<float>::min());
        }
    }
}

TEST_P(KernelSetTest, ComputesArithmeticAsTheReferenceDoes)
{
    const std::vector<float> a = interestingValues();
    std::vector<float> b = interestingValues();
    std::reverse(b.begin(), b.end());
    const std::vector<float> c(a.size(), 2.5f);
    using enum RowOperation;
    for (const RowOperation operation : { copy, add, subtract, multiply, divide, minimum, maximum, select, negate,
             absolute, square, squareRoot, reciprocalSquareRoot, reciprocal, relu }) {
        const std::vector<float> actual = apply(kernels(), operation, a, b, c);
        const std::vector<float> expected = apply(referenceKernels(), operation, a, b, c);
        for (size_t i = 0; i < a.size(); ++i)
            EXPECT_EQ(distance(actual[i], expected[i]), 0)
                << static_cast<int>(operation) << " of " << a[i] << ", " << b[i];
    }
}

TEST_P(KernelSetTest, ComputesRowsOfEveryLengthAndNothingBeyond)
{
    for (int64_t count = 0; count < 40; ++count) {
        const std::vector<float> a = randomValues(count, 1);
        std::vector<float> result(static_cast<size_t>(count) + 1, 7.0f);
        const std::vector<float> two(uniformCopies, 2.0f);
        kernels().rowInstruction(
            { RowOperation::multiply, { a.data(), false }, { two.data(), true }, {}, result.data(), count });
        for (int64_t i = 0; i < count; ++i)
            EXPECT_EQ(result[static_cast<size_t>(i)], 2 * a[static_cast<size_t>(i)]);
        EXPECT_EQ(result.back(), 7.0f) << count;
    }
}

TEST_P(KernelSetTest, SoftmaxAgreesWithTheReference)
{
    for (const int64_t count : { 1, 5, 16, 17, 188, 1025 }) {
        std::vector<float> actual = randomValues(count, 9, 20.0f);
        if (count > 1)
            actual[1] = -infinity;
        std::vector<float> expected = actual;
        kernels().softmax(actual.data(), count);
        referenceKernels().softmax(expected.data(), count);
        expectNear(actual, expected, 1e-6f);
    }
}

TEST_P(KernelSetTest, SoftmaxOfNothingButMinusInfinityIsNotANumber)
{
    std::vector<float> row(19, -infinity);
    kernels().softmax(row.data(), 19);
    EXPECT_TRUE(std::all_of(row.begin(), row.end(), [](float x) { return std::isnan(x); }));
}

TEST_P(KernelSetTest, LayerNormAgreesWithTheReference)
{
    for (const int64_t count : { 1, 8, 17, 192, 1025 }) {
        const std::vector<float> from = randomValues(count, 4, 30.0f);
        const std::vector<float> gamma = randomValues(count, 5);
        const std::vector<float> beta = randomValues(count, 6);
        for (const bool isAffine : { false, true }) {
            std::vector<float> actual(from.size());
            std::vector<float> expected(from.size());
            LayerNormRow row { from.data(), isAffine ? gamma.data() : nullptr, isAffine ? beta.data() : nullptr,
                actual.data(), count, 1e-5f };
            kernels().layerNorm(row);
            row.to = expected.data();
            referenceKernels().layerNorm(row);
            expectNear(actual, expected, 2e-5f);
        }
    }
}

TEST_P(KernelSetTest, DepthwiseSkipsTapsInThePadding)
{
    constexpr int64_t channels = 37;
    const std::vector<float> x = randomValues(3 * channels, 11);
    const std::vector<float> weights = randomValues(4 * channels, 12);
    const std::vector<float> bias = randomValues(channels, 13);
    const float* taps[] = { nullptr, x.data(), x.data() + channels, x.data() + 2 * channels };
    std::vector<float> actual(channels);
    std::vector<float> expected(channels);
    kernels().depthwise({ taps, weights.data(), bias.data(), actual.data(), 4, channels });
    referenceKernels().depthwise({ taps, weights.data(), bias.data(), expected.data(), 4, channels });
    expectNear(actual, expected, 1e-6f);
}

} // namespace

} // namespace MLProgram
