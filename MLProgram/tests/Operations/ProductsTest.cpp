// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

TEST(Products, LinearMultipliesByTheTransposedWeight)
{
    const Tensor weight = reals({ 2, 3 }, { 1, 0, 2, -1, 3, 1 });
    EXPECT_THAT(evaluate("linear", { { "x", reals({ 1, 2, 3 }) }, { "weight", weight } }), equals(reals({ 7, 8 })));
    EXPECT_THAT(
        evaluate("linear", { { "x", counting({ 1, 2, 3 }) }, { "weight", weight }, { "bias", reals({ 10, 20 }) } }),
        equals(reals({ 1, 2, 2 }, { 14, 25, 23, 34 })));
    EXPECT_THAT(evaluate("linear", { { "x", counting({ 0, 3 }) }, { "weight", weight } }), equals(reals({ 0, 2 }, {})));
    EXPECT_THAT(evaluate("linear",
                    { { "x", counting({ 2, 0 }) }, { "weight", counting({ 2, 0 }) }, { "bias", reals({ 1, 2 }) } }),
        equals(reals({ 2, 2 }, { 1, 2, 1, 2 })));
    EXPECT_THAT(evaluate("linear", { { "x", integers({ 2, 3 }) }, { "weight", integers({ 1, 2 }, { INT32_MAX, 1 }) } }),
        equals(integers({ 1 })));
}

TEST(Products, LinearRefusesWhatDoesNotFit)
{
    const Tensor weight = counting({ 2, 3 });
    EXPECT_THAT(refusal("linear", { { "x", counting({ 2 }) }, { "weight", weight } }), HasSubstr("each input"));
    EXPECT_THAT(refusal("linear", { { "x", 1.0f }, { "weight", weight } }), HasSubstr("rank 0"));
    EXPECT_THAT(refusal("linear", { { "x", counting({ 3 }) }, { "weight", weight }, { "bias", counting({ 3 }) } }),
        HasSubstr("\"bias\""));
    EXPECT_THAT(refusal("linear", { { "x", integers({ 1, 2, 3 }) }, { "weight", weight } }), HasSubstr("types"));
}

TEST(Products, MatricesMultiplyWithAnyTranspositions)
{
    const Tensor x = reals({ 2, 3 }, { 1, 2, 3, 4, 5, 6 });
    const Tensor xTransposed = reals({ 3, 2 }, { 1, 4, 2, 5, 3, 6 });
    const Tensor y = reals({ 3, 2 }, { 7, 8, 9, 10, 11, 12 });
    const Tensor yTransposed = reals({ 2, 3 }, { 7, 9, 11, 8, 10, 12 });
    const Tensor product = reals({ 2, 2 }, { 58, 64, 139, 154 });
    EXPECT_THAT(evaluate("matmul", { { "x", x }, { "y", y } }), equals(product));
    EXPECT_THAT(evaluate("matmul", { { "x", xTransposed }, { "y", y }, { "transpose_x", true } }), equals(product));
    EXPECT_THAT(evaluate("matmul", { { "x", x }, { "y", yTransposed }, { "transpose_y", true } }), equals(product));
    EXPECT_THAT(evaluate("matmul",
                    { { "x", xTransposed }, { "y", yTransposed }, { "transpose_x", true }, { "transpose_y", true } }),
        equals(product));
}

TEST(Products, BatchesOfMatricesAreStretched)
{
    const Tensor x = counting({ 2, 1, 1, 2 });
    const Tensor y = reals({ 3, 2, 1 }, { 1, 0, 0, 1, 1, 1 });
    EXPECT_THAT(evaluate("matmul", { { "x", x }, { "y", y } }), equals(reals({ 2, 3, 1, 1 }, { 0, 1, 1, 2, 3, 5 })));
    EXPECT_THAT(evaluate("matmul", { { "x", counting({ 2, 2, 2 }) }, { "y", reals({ 2, 1 }, { 1, 1 }) } }),
        equals(reals({ 2, 2, 1 }, { 1, 5, 9, 13 })));
    EXPECT_THAT(
        evaluate("matmul", { { "x", counting({ 2, 1, 2 }) }, { "y", counting({ 1, 2, 2 }) }, { "transpose_y", true } }),
        equals(reals({ 2, 1, 2 }, { 1, 3, 3, 13 })));
}

TEST(Products, VectorsAreRowsOnTheLeftAndColumnsOnTheRight)
{
    const Tensor v = reals({ 1, 2 });
    const Tensor m = reals({ 2, 2 }, { 1, 2, 3, 4 });
    EXPECT_THAT(evaluate("matmul", { { "x", v }, { "y", m } }), equals(reals({ 7, 10 })));
    EXPECT_THAT(evaluate("matmul", { { "x", m }, { "y", v } }), equals(reals({ 5, 11 })));
    EXPECT_THAT(evaluate("matmul", { { "x", v }, { "y", v } }), equals(reals({}, { 5 })));
}

TEST(Products, IntegerProductsWrap)
{
    EXPECT_THAT(evaluate("matmul", { { "x", integers({ 65536, 3 }) }, { "y", integers({ 65536, 4 }) } }),
        equals(integers({}, { 12 })));
}

TEST(Products, AnEmptyInnerDimensionGivesZeros)
{
    EXPECT_THAT(evaluate("matmul", { { "x", counting({ 1, 0 }) }, { "y", counting({ 0, 2 }) } }),
        equals(reals({ 1, 2 }, { 0, 0 })));
}

TEST(Products, MatmulRefusesWhatDoesNotFit)
{
    EXPECT_THAT(refusal("matmul", { { "x", counting({ 2, 3 }) }, { "y", counting({ 2, 3 }) } }), HasSubstr("columns"));
    EXPECT_THAT(refusal("matmul", { { "x", counting({ 2 }) }, { "y", 1.0f } }), HasSubstr("rank 0"));
    EXPECT_THAT(
        refusal("matmul", { { "x", counting({ 2, 1, 1 }) }, { "y", counting({ 3, 1, 1 }) } }), HasSubstr("stretched"));
    EXPECT_THAT(refusal("matmul", { { "x", booleans({ 1 }) }, { "y", booleans({ 1 }) } }), HasSubstr("numbers"));
}

TEST(Products, AttentionWeighsValuesByTheirKeys)
{
    const Tensor query = reals({ 1, 4 }, { 2, 0, 0, 0 });
    const Tensor keys = reals({ 2, 4 }, { 1, 0, 0, 0, 0, 1, 0, 0 });
    const Tensor values = reals({ 2, 2 }, { 1, 10, 2, 20 });
    // The scores are 2 / sqrt(4) = 1 and 0.
    EXPECT_THAT(evaluate("scaled_dot_product_attention", { { "query", query }, { "key", keys }, { "value", values } }),
        isNear(reals({ 1, 2 }, { 1.2689414f, 12.689414f })));
}

TEST(Products, AttentionIsMaskedByBooleansOrTerms)
{
    const auto attended = [](Argument mask) {
        return evaluate("scaled_dot_product_attention",
            { { "query", counting({ 1, 2, 1 }) }, { "key", reals({ 1, 2, 1 }, { 0, 0 }) },
                { "value", reals({ 1, 2, 1 }, { 1, 3 }) }, { "attn_mask", std::move(mask) } });
    };
    EXPECT_THAT(attended(booleans({ 2, 2 }, { 1, 0, 0, 1 })), equals(reals({ 1, 2, 1 }, { 1, 3 })));
    EXPECT_THAT(attended(booleans({ 2 }, { 0, 1 })), equals(reals({ 1, 2, 1 }, { 3, 3 })));
    EXPECT_THAT(attended(reals({ 2, 1 }, { 5, -1e4f })), equals(reals({ 1, 2, 1 }, { 2, 2 })));
    EXPECT_THAT(attended(booleans({ 2, 1 }, { 1, 0 })), equals(reals({ 1, 2, 1 }, { 2, notANumber })));
}

TEST(Products, AttentionStretchesBatches)
{
    EXPECT_THAT(evaluate("scaled_dot_product_attention",
                    { { "query", counting({ 2, 1, 1, 1 }) }, { "key", reals({ 1, 2, 1, 1 }, { 1, 1 }) },
                        { "value", reals({ 2, 1, 1 }, { 5, 6 }) } }),
        equals(reals({ 2, 2, 1, 1 }, { 5, 6, 5, 6 })));
}

TEST(Products, AttentionRefusesWhatDoesNotFit)
{
    const auto words = [](Tensor query, Tensor key, Tensor value) {
        return refusal("scaled_dot_product_attention",
            { { "query", std::move(query) }, { "key", std::move(key) }, { "value", std::move(value) } });
    };
    EXPECT_THAT(words(counting({ 1, 2 }), counting({ 1, 3 }), counting({ 1, 1 })), HasSubstr("length"));
    EXPECT_THAT(words(counting({ 1, 2 }), counting({ 3, 2 }), counting({ 2, 1 })), HasSubstr("as many keys"));
    EXPECT_THAT(words(counting({ 2 }), counting({ 3, 2 }), counting({ 3, 1 })), HasSubstr("rank 1"));
    EXPECT_THAT(refusal("scaled_dot_product_attention",
                    { { "query", counting({ 1, 1 }) }, { "key", counting({ 1, 1 }) }, { "value", counting({ 1, 1 }) },
                        { "attn_mask", booleans({ 2, 1, 1 }, { 1, 1 }) } }),
        HasSubstr("mask"));
}
