// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/Operation.h"

#include <MLProgram/MLModelError.h>

#include <gmock/gmock.h>

#include <cmath>

using namespace MLProgram;
using testing::ElementsAre;

namespace {

Tensor vectorOf(std::initializer_list<int32_t> values)
{
    Tensor tensor({ ElementType::integer, { static_cast<int64_t>(values.size()) } });
    std::copy(values.begin(), values.end(), tensor.view().integers().begin());
    return tensor;
}

Tensor scalarOf(float value)
{
    Tensor tensor({ ElementType::real, {} });
    tensor.view().reals()[0] = value;
    return tensor;
}

} // namespace

TEST(Operands, ReadScalarsOfAnyType)
{
    const Tensor whole = vectorOf({ -3 });
    const Tensor fraction = scalarOf(2.75f);
    Operands operands("conv");
    operands.add("whole", whole.view());
    operands.add("fraction", fraction.view());
    EXPECT_EQ(operands.integer("whole"), -3);
    EXPECT_EQ(operands.real("whole"), -3.0f);
    EXPECT_EQ(operands.real("fraction", 0), 2.75f);
    EXPECT_EQ(operands.integer("fraction"), 2);
    EXPECT_TRUE(operands.flag("fraction", false));
}

TEST(Operands, AnIntegerOutOfRangeIsSaturated)
{
    const Tensor large = scalarOf(1e20f);
    const Tensor none = scalarOf(std::nanf(""));
    Operands operands("topk");
    operands.add("large", large.view());
    operands.add("none", none.view());
    EXPECT_EQ(operands.integer("large"), INT32_MAX);
    EXPECT_EQ(operands.integer("none"), 0);
}

TEST(Operands, AbsentOptionalOperandsGiveTheDefault)
{
    const Operands operands("pad");
    EXPECT_FALSE(operands.has("mode"));
    EXPECT_EQ(operands.text("mode", "constant"), "constant");
    EXPECT_EQ(operands.integer("axis", -1), -1);
    EXPECT_EQ(operands.real("epsilon", 0.5f), 0.5f);
    EXPECT_TRUE(operands.flag("sort", true));
    EXPECT_EQ(operands.optionalTensor("bias"), nullptr);
    EXPECT_FALSE(operands.optionalIntegers("axes").has_value());
    EXPECT_FALSE(operands.optionalFlags("begin_mask").has_value());
}

TEST(Operands, ALoneTensorIsAListOfOne)
{
    const Tensor values = vectorOf({ 1, 2 });
    Operands operands("concat");
    operands.add("values", values.view());
    ASSERT_EQ(operands.tensors("values").size(), 1u);
    EXPECT_THAT(operands.integers("values"), ElementsAre(1, 2));
}

TEST(Operands, WhatIsNotKnownYetIsReportedAsSuch)
{
    Operands operands("reshape");
    operands.add("shape", TensorView { { ElementType::integer, { 2 } }, nullptr });
    operands.add("axis", TensorView { { ElementType::integer, {} }, nullptr });
    EXPECT_THROW(operands.integers("shape"), ValueNotKnown);
    EXPECT_THROW(operands.integer("axis"), ValueNotKnown);
    EXPECT_EQ(operands.tensor("shape").type.shape.size(), 1u);
}

TEST(Operands, AFaultNamesTheOperationAndTheOperand)
{
    const Operands operands("reshape");
    try {
        operands.tensor("shape");
        FAIL();
    } catch (const MLModelError& error) {
        EXPECT_EQ(error.which(), MLModelError::Case::invalidProgram);
        EXPECT_EQ(error.description(), "The operation reshape is not sound: the operand \"shape\" is missing.");
    }
}

TEST(Operands, TheWrongKindIsRefused)
{
    const Tensor pair = vectorOf({ 1, 2 });
    const Tensor fraction = scalarOf(1.0f);
    Operands operands("einsum");
    operands.add("equation", std::string_view("ab,bc->ac"));
    operands.add("pair", pair.view());
    operands.add("fraction", fraction.view());
    operands.add("list", Operands::List { pair.view(), pair.view() });
    EXPECT_THROW(operands.tensor("equation"), MLModelError);
    EXPECT_THROW(operands.text("pair"), MLModelError);
    EXPECT_THROW(operands.integer("pair"), MLModelError);
    EXPECT_THROW(operands.integers("fraction"), MLModelError);
    EXPECT_THROW(operands.optionalFlags("pair"), MLModelError);
    EXPECT_THROW(operands.tensor("list"), MLModelError);
}
