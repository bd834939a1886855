// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

Tensor of(const char* operation, Tensor x)
{
    return evaluate(operation, { { "x", std::move(x) } });
}

} // namespace

TEST(Activations, WithoutParameters)
{
    EXPECT_THAT(of("relu", reals({ -1, 0, 2 })), equals(reals({ 0, 0, 2 })));
    EXPECT_THAT(of("relu6", reals({ -1, 2, 7 })), equals(reals({ 0, 2, 6 })));
    EXPECT_THAT(of("sigmoid", reals({ 0, 1, -200, 200 })), isNear(reals({ 0.5f, 0.7310586f, 0, 1 })));
    EXPECT_THAT(of("silu", reals({ 0, 1, -2 })), isNear(reals({ 0, 0.7310586f, -0.23840584f })));
    EXPECT_THAT(of("softsign", reals({ -3, 1 })), equals(reals({ -0.75f, 0.5f })));
    EXPECT_THAT(refusal("relu", { { "x", 1 } }), HasSubstr("real"));
}

TEST(Activations, SoftplusIsStableAtBothEnds)
{
    EXPECT_THAT(of("softplus", reals({ 0, 1, 100, -20 })),
        isWithin(1e-7f, reals({ 0.6931472f, 1.3132616f, 100, 2.0611537e-9f })));
}

TEST(Activations, GeluHasThreeModes)
{
    const Tensor x = reals({ 1, -2 });
    EXPECT_THAT(of("gelu", x), isNear(reals({ 0.84134475f, -0.04550026f })));
    EXPECT_THAT(evaluate("gelu", { { "x", x }, { "mode", "EXACT" } }), isNear(reals({ 0.84134475f, -0.04550026f })));
    EXPECT_THAT(evaluate("gelu", { { "x", x }, { "mode", "TANH_APPROXIMATION" } }),
        isNear(reals({ 0.84119199f, -0.04540231f })));
    EXPECT_THAT(evaluate("gelu", { { "x", x }, { "mode", "SIGMOID_APPROXIMATION" } }),
        isNear(reals({ 0.84579577f, -0.06434138f })));
    EXPECT_THAT(refusal("gelu", { { "x", x }, { "mode", "exact" } }), HasSubstr("mode"));
}

TEST(Activations, WithParameters)
{
    const Tensor x = reals({ -2, 0.5f, 3 });
    const auto with = [&](const char* operation, float alpha, float beta) {
        return evaluate(operation, { { "x", x }, { "alpha", alpha }, { "beta", beta } });
    };
    EXPECT_THAT(with("leaky_relu", 0.25f, 0), equals(reals({ -0.5f, 0.5f, 3 })));
    EXPECT_THAT(with("elu", 2, 0), isNear(reals({ -1.7293294f, 0.5f, 3 })));
    EXPECT_THAT(with("clamped_relu", 0.5f, 2), equals(reals({ -1, 0.5f, 2 })));
    EXPECT_THAT(with("thresholded_relu", 0.5f, 0), equals(reals({ 0, 0.5f, 3 })));
    EXPECT_THAT(with("linear_activation", 2, 1), equals(reals({ -3, 2, 7 })));
    EXPECT_THAT(with("scaled_tanh", 3, 0.5f), isNear(reals({ -2.2847825f, 0.73475599f, 2.7154446f })));
    EXPECT_THAT(with("sigmoid_hard", 0.5f, 0.25f), equals(reals({ 0, 0.5f, 1 })));
}

TEST(Activations, HaveDefaults)
{
    const Tensor x = reals({ -2, 0.5f });
    EXPECT_THAT(of("leaky_relu", x), isNear(reals({ -0.02f, 0.5f })));
    EXPECT_THAT(of("elu", x), isNear(reals({ -0.86466472f, 0.5f })));
    EXPECT_THAT(of("clamped_relu", reals({ -2, 5 })), equals(reals({ -2, 1 })));
    EXPECT_THAT(of("thresholded_relu", reals({ 0.5f, 1 })), equals(reals({ 0, 1 })));
    EXPECT_THAT(of("scaled_tanh", reals({ 1 })), isNear(reals({ 0.76159416f })));
    EXPECT_THAT(of("sigmoid_hard", reals({ 1 })), isNear(reals({ 0.7f })));
    EXPECT_THAT(evaluate("linear_activation", { { "x", x }, { "alpha", 2.0f } }), equals(reals({ -4, 1 })));
    EXPECT_THAT(refusal("linear_activation", { { "x", x } }), HasSubstr("\"alpha\" is missing"));
}

TEST(Activations, WithParametersForEachChannel)
{
    const Tensor x = reals({ 1, 2, 2 }, { -1, 2, -3, 4 });
    EXPECT_THAT(evaluate("prelu", { { "x", x }, { "alpha", reals({ 0.5f, 2 }) } }),
        equals(reals({ 1, 2, 2 }, { -0.5f, 2, -6, 4 })));
    EXPECT_THAT(
        evaluate("softplus_parametric",
            { { "x", reals({ 1, 2 }, { 1, 0 }) }, { "alpha", reals({ 2, 3 }) }, { "beta", reals({ 0.5f, 7 }) } }),
        isNear(reals({ 1, 2 }, { 1.9481539f, 2.0794415f })));
    EXPECT_THAT(refusal("prelu", { { "x", x }, { "alpha", reals({ 1, 2, 3 }) } }), HasSubstr("each channel"));
    EXPECT_THAT(refusal("prelu", { { "x", reals({ 1 }) }, { "alpha", reals({ 1 }) } }), HasSubstr("rank 1"));
}

TEST(Activations, SoftmaxRunsAlongItsAxis)
{
    const Tensor x = reals({ 2, 2 }, { 0, 1, 2, 5 });
    EXPECT_THAT(of("softmax", x), isNear(reals({ 2, 2 }, { 0.26894143f, 0.7310586f, 0.04742587f, 0.95257413f })));
    EXPECT_THAT(evaluate("softmax", { { "x", x }, { "axis", 0 } }),
        isNear(reals({ 2, 2 }, { 0.11920292f, 0.01798621f, 0.88079708f, 0.98201379f })));
    EXPECT_THAT(evaluate("softmax", { { "x", x }, { "axis", -2 } }),
        isNear(reals({ 2, 2 }, { 0.11920292f, 0.01798621f, 0.88079708f, 0.98201379f })));
    EXPECT_THAT(of("softmax", reals({ 0, 4 }, {})), equals(reals({ 0, 4 }, {})));
    EXPECT_THAT(refusal("softmax", { { "x", x }, { "axis", 2 } }), HasSubstr("axis 2"));
    EXPECT_THAT(refusal("softmax", { { "x", 1.0f } }), HasSubstr("axis -1"));
}

TEST(Activations, SoftmaxKeepsLargeValuesAndMasks)
{
    EXPECT_THAT(of("softmax", reals({ 1000, 1000, -infinity })), equals(reals({ 0.5f, 0.5f, 0 })));
    EXPECT_THAT(of("softmax", reals({ -infinity, -infinity })), equals(reals({ notANumber, notANumber })));
}
