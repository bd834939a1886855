// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

TEST(Upsampling, RepeatsRowsAndColumns)
{
    const Tensor x = reals({ 1, 2, 2 }, { 1, 2, 3, 4 });
    EXPECT_THAT(evaluate("upsample_nearest_neighbor",
                    { { "x", x }, { "scale_factor_height", 2.0f }, { "scale_factor_width", 1 } }),
        equals(reals({ 1, 4, 2 }, { 1, 2, 1, 2, 3, 4, 3, 4 })));
    EXPECT_THAT(evaluate("upsample_nearest_neighbor", { { "x", x }, { "scale_factor_width", 1.5f } }),
        equals(reals({ 1, 2, 3 }, { 1, 1, 2, 3, 3, 4 })));
    EXPECT_THAT(evaluate("upsample_nearest_neighbor", { { "x", x } }), equals(x));
    EXPECT_THAT(evaluate("upsample_nearest_neighbor", { { "x", x }, { "scale_factor_height", 0.5f } }),
        equals(reals({ 1, 1, 2 }, { 1, 2 })));
}

TEST(Upsampling, RefusesUnusableScales)
{
    const auto words = [](float scale) {
        return refusal("upsample_nearest_neighbor", { { "x", counting({ 2, 2 }) }, { "scale_factor_width", scale } });
    };
    EXPECT_THAT(words(0), HasSubstr("positive"));
    EXPECT_THAT(words(notANumber), HasSubstr("positive"));
    EXPECT_THAT(words(infinity), HasSubstr("positive"));
    EXPECT_THAT(words(1e30f), HasSubstr("too large"));
}
