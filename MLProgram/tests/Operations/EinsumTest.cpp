// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

Arguments equation(const char* text, Tensor x, Tensor y)
{
    return { { "equation", text }, { "values", List { std::move(x), std::move(y) } } };
}

} // namespace

TEST(Einsum, ComputesAProductOfMatrices)
{
    const Tensor x = reals({ 2, 3 }, { 1, 2, 3, 4, 5, 6 });
    const Tensor y = reals({ 3, 2 }, { 7, 8, 9, 10, 11, 12 });
    EXPECT_THAT(evaluate("einsum", equation("ij,jk->ik", x, y)), equals(reals({ 2, 2 }, { 58, 64, 139, 154 })));
    EXPECT_THAT(evaluate("einsum", equation(" ij, jk -> ki ", x, y)), equals(reals({ 2, 2 }, { 58, 139, 64, 154 })));
    EXPECT_THAT(evaluate("einsum", equation("ij,jk->", x, y)), equals(reals({}, { 415 })));
    EXPECT_THAT(evaluate("einsum", equation("ij,jk->jik", x, y)).type().shape, (Shape { 3, 2, 2 }));
}

TEST(Einsum, ContractsTheFormsOfAttention)
{
    // The last dimension of the first with the third-last of the second, one product for each h.
    EXPECT_THAT(evaluate("einsum", equation("nchw,nwhu->nchu", counting({ 1, 1, 2, 2 }), counting({ 1, 2, 2, 1 }))),
        equals(reals({ 1, 1, 2, 1 }, { 2, 11 })));
    EXPECT_THAT(evaluate("einsum", equation("chw,whr->chr", counting({ 1, 2, 2 }), counting({ 2, 2, 1 }))),
        equals(reals({ 1, 2, 1 }, { 2, 11 })));
    // [b c h q] and [b k h c].
    EXPECT_THAT(
        evaluate("einsum",
            equation("bchq,bkhc->bkhq", reals({ 1, 2, 1, 1 }, { 1, 10 }), reals({ 1, 2, 1, 2 }, { 1, 2, 3, 4 }))),
        equals(reals({ 1, 2, 1, 1 }, { 21, 43 })));
}

TEST(Einsum, StretchesDimensionsOfOne)
{
    EXPECT_THAT(evaluate("einsum", equation("bi,bi->b", reals({ 1, 2 }, { 1, 2 }), counting({ 2, 2 }))),
        equals(reals({ 2 }, { 2, 8 })));
    EXPECT_THAT(evaluate("einsum", equation("a,b->ab", reals({ 1, 2 }), reals({ 3, 4 }))),
        equals(reals({ 2, 2 }, { 3, 4, 6, 8 })));
}

TEST(Einsum, WorksOnIntegersAndOnNothing)
{
    EXPECT_THAT(evaluate("einsum", equation("i,i->", integers({ 65536, 2 }), integers({ 65536, 3 }))),
        equals(integers({}, { 6 })));
    EXPECT_THAT(evaluate("einsum", equation("ij,jk->ik", counting({ 1, 0 }), counting({ 0, 1 }))),
        equals(reals({ 1, 1 }, { 0 })));
}

TEST(Einsum, RefusesEquationsThatDoNotFit)
{
    const auto words = [](const char* text) {
        return refusal("einsum", equation(text, counting({ 2, 3 }), counting({ 3, 2 })));
    };
    EXPECT_THAT(words("ij,jk"), HasSubstr("form"));
    EXPECT_THAT(words("ij->jk"), HasSubstr("form"));
    EXPECT_THAT(words("ii,jk->ik"), HasSubstr("twice"));
    EXPECT_THAT(words("ij,jk->ii"), HasSubstr("twice"));
    EXPECT_THAT(words("i,jk->ik"), HasSubstr("each dimension"));
    EXPECT_THAT(words("ij,ik->jk"), HasSubstr("differ"));
    EXPECT_THAT(words("ij,jk->iz"), HasSubstr("no tensor has"));
    EXPECT_THAT(words("i.,jk->ik"), HasSubstr("foreign"));
    EXPECT_THAT(words("abcdefghi,jk->a"), HasSubstr("too many"));
    EXPECT_THAT(
        refusal("einsum", { { "equation", "i,i->" }, { "values", counting({ 2 }) } }), HasSubstr("two tensors"));
    EXPECT_THAT(refusal("einsum", equation("i,i->", counting({ 2 }), integers({ 1, 2 }))), HasSubstr("one type"));
    EXPECT_THAT(refusal("einsum",
                    equation("abcdefgh,ijklmnop->", counting({ 1, 1, 1, 1, 1, 1, 1, 1 }),
                        counting({ 1, 1, 1, 1, 1, 1, 1, 1 }))),
        HasSubstr("sums over too many"));
}
