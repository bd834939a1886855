// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

// Layers of one unit and one input, with activations that pass their operand on: worked out by hand.

Arguments with(Arguments arguments, const Arguments& more)
{
    for (const auto& [name, argument] : more) {
        std::erase_if(arguments, [&](const auto& known) { return known.first == name; });
        arguments.emplace_back(name, argument);
    }
    return arguments;
}

Tensor column(const std::vector<float>& values)
{
    return reals({ static_cast<int64_t>(values.size()), 1 }, values);
}

// h' = x + 10 h, over the inputs 1 2 3 from the state 0.
const Arguments digits = {
    { "x", reals({ 3, 1, 1 }, { 1, 2, 3 }) },
    { "initial_h", column({ 0 }) },
    { "weight_ih", column({ 1 }) },
    { "weight_hh", column({ 10 }) },
    { "activation", "linear" },
};

// One step from h = 2 and c = 10 with the input 1: i = 1, f = 2, o = 3, z = 4.
const Arguments cell = {
    { "x", reals({ 1, 1, 1 }, { 1 }) },
    { "initial_h", column({ 2 }) },
    { "initial_c", column({ 10 }) },
    { "weight_ih", column({ 1, 2, 3, 4 }) },
    { "weight_hh", column({ 0, 0, 0, 0 }) },
    { "recurrent_activation", "linear" },
    { "cell_activation", "linear" },
    { "activation", "linear" },
};

// One step from h = 10 with the input 1: r = 2, z = 4.
const Arguments gates = {
    { "x", reals({ 1, 1, 1 }, { 1 }) },
    { "initial_h", column({ 10 }) },
    { "weight_ih", column({ 2, 3, 4 }) },
    { "weight_hh", column({ 0, 5, 0 }) },
    { "recurrent_activation", "linear" },
    { "activation", "linear" },
};

} // namespace

TEST(Recurrent, GivesTheLastStepAndTheState)
{
    const auto outputs = evaluateAll("rnn", digits);
    ASSERT_EQ(outputs.size(), 2u);
    EXPECT_THAT(outputs[0], equals(reals({ 1, 1, 1 }, { 123 })));
    EXPECT_THAT(outputs[1], equals(column({ 123 })));
}

TEST(Recurrent, GivesTheWholeSequenceWhenAsked)
{
    EXPECT_THAT(
        evaluate("rnn", with(digits, { { "output_sequence", true } })), equals(reals({ 3, 1, 1 }, { 1, 12, 123 })));
}

TEST(Recurrent, RunsBackwardsWithEachResultInItsPlace)
{
    const auto outputs = evaluateAll("rnn", with(digits, { { "direction", "reverse" }, { "output_sequence", true } }));
    EXPECT_THAT(outputs[0], equals(reals({ 3, 1, 1 }, { 321, 32, 3 })));
    EXPECT_THAT(outputs[1], equals(column({ 321 })));
    EXPECT_THAT(evaluate("rnn", with(digits, { { "direction", "reverse" } })), equals(reals({ 1, 1, 1 }, { 321 })));
}

TEST(Recurrent, StartsFromTheStateAndAddsTheBias)
{
    EXPECT_THAT(
        evaluate("rnn",
            with(digits,
                { { "x", reals({ 1, 1, 1 }, { 5 }) }, { "initial_h", column({ 2 }) }, { "bias", reals({ 100 }) } })),
        equals(reals({ 1, 1, 1 }, { 125 })));
}

TEST(Recurrent, KeepsTheRowsOfABatchApart)
{
    const auto outputs = evaluateAll("rnn",
        with(digits,
            { { "x", reals({ 2, 2, 1 }, { 1, 5, 2, 6 }) }, { "initial_h", column({ 0, 1 }) },
                { "output_sequence", true } }));
    EXPECT_THAT(outputs[0], equals(reals({ 2, 2, 1 }, { 1, 15, 12, 156 })));
    EXPECT_THAT(outputs[1], equals(column({ 12, 156 })));
}

TEST(Recurrent, MultipliesAllInputsAndUnits)
{
    EXPECT_THAT(evaluate("rnn",
                    with(digits,
                        { { "x", reals({ 1, 1, 3 }, { 1, 2, 3 }) }, { "initial_h", reals({ 1, 2 }, { 1, 2 }) },
                            { "weight_ih", reals({ 2, 3 }, { 1, 0, 0, 0, 1, 1 }) },
                            { "weight_hh", reals({ 2, 2 }, { 10, 100, 0, 1000 }) } })),
        equals(reals({ 1, 1, 2 }, { 211, 2005 })));
}

TEST(Recurrent, WithoutStepsTheStateStays)
{
    const Arguments still = with(digits, { { "x", reals({ 0, 1, 1 }, {}) }, { "initial_h", column({ 7 }) } });
    EXPECT_THAT(evaluate("rnn", still), equals(reals({ 1, 1, 1 }, { 7 })));
    const auto outputs = evaluateAll("rnn", with(still, { { "output_sequence", true } }));
    EXPECT_THAT(outputs[0], equals(reals({ 0, 1, 1 }, {})));
    EXPECT_THAT(outputs[1], equals(column({ 7 })));
}

TEST(Recurrent, KnowsTheUsualActivations)
{
    const auto of = [](const char* activation, float x) {
        return evaluate("rnn", with(digits, { { "x", reals({ 1, 1, 1 }, { x }) }, { "activation", activation } }))
            .view()
            .reals()[0];
    };
    EXPECT_NEAR(of("tanh", 1), 0.76159416f, rounding);
    EXPECT_NEAR(of("sigmoid", 1), 0.7310586f, rounding);
    EXPECT_NEAR(of("scaled_tanh", 1.5f), 1.3068194f, rounding);
    EXPECT_NEAR(of("hard_sigmoid", 1), 0.7f, rounding);
    EXPECT_EQ(of("hard_sigmoid", 3), 1);
    EXPECT_EQ(of("sigmoid_hard", -3), 0);
    EXPECT_EQ(of("softsign", -1), -0.5f);
    EXPECT_EQ(of("relu", -1), 0);
    EXPECT_EQ(of("relu", 2), 2);
    EXPECT_EQ(of("linear", -2), -2);
}

TEST(Recurrent, RefusesOperandsThatDoNotFit)
{
    const auto refused = [](const Arguments& more) { return refusal("rnn", with(digits, more)); };
    EXPECT_THAT(refused({ { "x", reals({ 3, 1 }, { 1, 2, 3 }) } }), HasSubstr("rank 2"));
    EXPECT_THAT(refused({ { "x", integers({ 1, 1, 1 }, { 1 }) } }), HasSubstr("real numbers"));
    EXPECT_THAT(refused({ { "weight_ih", column({ 1, 2 }) } }), HasSubstr("\"weight_ih\""));
    EXPECT_THAT(refused({ { "weight_hh", column({ 1, 2 }) } }), HasSubstr("\"weight_hh\""));
    EXPECT_THAT(refused({ { "weight_hh", reals({ 1 }) } }), HasSubstr("rank 1"));
    EXPECT_THAT(refused({ { "bias", reals({ 1, 2 }) } }), HasSubstr("\"bias\""));
    EXPECT_THAT(refused({ { "initial_h", column({ 1, 2 }) } }), HasSubstr("\"initial_h\""));
    EXPECT_THAT(refused({ { "activation", "cubic" } }), HasSubstr("the activation \"cubic\" is unknown"));
    EXPECT_THAT(refused({ { "direction", "sideways" } }), HasSubstr("the direction \"sideways\" is unknown"));
    EXPECT_THAT(refused({ { "direction", "bidirectional" } }), HasSubstr("\"weight_ih_back\" is missing"));
}

TEST(Lstm, OrdersItsGatesInputForgetOutputCandidate)
{
    const auto outputs = evaluateAll("lstm", cell);
    ASSERT_EQ(outputs.size(), 3u);
    EXPECT_THAT(outputs[0], equals(reals({ 1, 1, 1 }, { 72 })));
    EXPECT_THAT(outputs[1], equals(column({ 72 })));
    EXPECT_THAT(outputs[2], equals(column({ 24 })));
}

TEST(Lstm, AddsTheProductWithTheStateAndTheBias)
{
    // i = 1 + 2 + 1, f = 2 + 2 + 1, o = 3 + 2 + 1, z = 4 + 2 + 1
    const auto outputs = evaluateAll(
        "lstm", with(cell, { { "weight_hh", column({ 1, 1, 1, 1 }) }, { "bias", reals({ 1, 1, 1, 1 }) } }));
    EXPECT_THAT(outputs[2], equals(column({ 78 })));
    EXPECT_THAT(outputs[1], equals(column({ 468 })));
}

TEST(Lstm, HoldsTheCellWithinItsClip)
{
    const auto clipped = evaluateAll("lstm", with(cell, { { "clip", 20.0f } }));
    EXPECT_THAT(clipped[1], equals(column({ 60 })));
    EXPECT_THAT(clipped[2], equals(column({ 20 })));
    const auto below = evaluateAll("lstm", with(cell, { { "clip", 20.0f }, { "initial_c", column({ -99 }) } }));
    EXPECT_THAT(below[2], equals(column({ -20 })));
}

TEST(Lstm, LetsItsGatesPeepAtTheCell)
{
    // i = 1 + 10, f = 2 + 20, c' = 220 + 44, and the output gate sees the new cell: o = 3 + 792
    const auto outputs = evaluateAll("lstm", with(cell, { { "peephole", reals({ 1, 2, 3 }) } }));
    EXPECT_THAT(outputs[2], equals(column({ 264 })));
    EXPECT_THAT(outputs[1], equals(column({ 209880 })));
}

TEST(Lstm, UsesSigmoidAndHyperbolicTangentByDefault)
{
    // Every gate is half open: c' = 1 / 2, h' = tanh(1 / 2) / 2
    const auto outputs = evaluateAll("lstm",
        { { "x", reals({ 1, 1, 1 }, { 0 }) }, { "initial_h", column({ 0 }) }, { "initial_c", column({ 1 }) },
            { "weight_ih", column({ 1, 1, 1, 1 }) }, { "weight_hh", column({ 1, 1, 1, 1 }) } });
    EXPECT_THAT(outputs[2], isNear(column({ 0.5f })));
    EXPECT_THAT(outputs[1], isNear(column({ 0.23105858f })));
}

TEST(Lstm, CarriesTheCellFromStepToStep)
{
    // c = 24, then 2 * 24 + 4 with h = 3 * 52
    const auto outputs
        = evaluateAll("lstm", with(cell, { { "x", reals({ 2, 1, 1 }, { 1, 1 }) }, { "output_sequence", true } }));
    EXPECT_THAT(outputs[0], equals(reals({ 2, 1, 1 }, { 72, 156 })));
    EXPECT_THAT(outputs[2], equals(column({ 52 })));
}

TEST(Lstm, PutsBothDirectionsSideBySide)
{
    const Arguments both = with(cell,
        { { "x", reals({ 2, 1, 1 }, { 1, 2 }) }, { "direction", "bidirectional" },
            { "initial_h", reals({ 1, 2 }, { 0, 0 }) }, { "initial_c", reals({ 1, 2 }, { 10, 1 }) },
            { "weight_ih_back", column({ 1, 0, 1, 0 }) }, { "weight_hh_back", column({ 0, 0, 0, 0 }) },
            { "bias_back", reals({ 0, 2, 0, 1 }) } });
    // Forward: c = 24, then 4 * 24 + 2 * 8 = 112 with o = 6.
    // Backward: c = 2 * 1 + 2 = 4 with o = 2 for the input 2, then 2 * 4 + 1 = 9 with o = 1 for the input 1.
    const auto sequence = evaluateAll("lstm", with(both, { { "output_sequence", true } }));
    EXPECT_THAT(sequence[0], equals(reals({ 2, 1, 2 }, { 72, 9, 672, 8 })));
    EXPECT_THAT(sequence[1], equals(reals({ 1, 2 }, { 672, 9 })));
    EXPECT_THAT(sequence[2], equals(reals({ 1, 2 }, { 112, 9 })));
    EXPECT_THAT(evaluate("lstm", both), equals(reals({ 1, 1, 2 }, { 672, 9 })));
}

TEST(Lstm, GivesEachDirectionItsOwnPeepholes)
{
    const Arguments both = with(cell,
        { { "direction", "bidirectional" }, { "initial_h", reals({ 1, 2 }, { 0, 0 }) },
            { "initial_c", reals({ 1, 2 }, { 10, 10 }) }, { "weight_ih_back", column({ 1, 2, 3, 4 }) },
            { "weight_hh_back", column({ 0, 0, 0, 0 }) }, { "peephole_back", reals({ 1, 2, 3 }) } });
    EXPECT_THAT(evaluateAll("lstm", both)[2], equals(reals({ 1, 2 }, { 24, 264 })));
}

TEST(Lstm, RefusesOperandsThatDoNotFit)
{
    const auto refused = [](const Arguments& more) { return refusal("lstm", with(cell, more)); };
    EXPECT_THAT(refused({ { "initial_c", column({ 1, 2 }) } }), HasSubstr("\"initial_c\""));
    EXPECT_THAT(refused({ { "weight_ih", column({ 1, 2, 3 }) } }), HasSubstr("\"weight_ih\""));
    EXPECT_THAT(refused({ { "weight_hh", column({ 1, 2, 3 }) } }), HasSubstr("\"weight_hh\""));
    EXPECT_THAT(refused({ { "peephole", reals({ 1, 2 }) } }), HasSubstr("\"peephole\""));
    EXPECT_THAT(refused({ { "clip", -1.0f } }), HasSubstr("\"clip\""));
    EXPECT_THAT(refused({ { "clip", notANumber } }), HasSubstr("\"clip\""));
    EXPECT_THAT(refused({ { "recurrent_activation", "cubic" } }), HasSubstr("cubic"));
    EXPECT_THAT(refused({ { "cell_activation", "cubic" } }), HasSubstr("cubic"));
    EXPECT_THAT(refused({ { "direction", "bidirectional" } }), HasSubstr("initial"));
}

TEST(Gru, OrdersItsGatesResetCandidateKeep)
{
    // o = 3 + 5 * 2 * 10, h' = (1 - 4) * 103 + 4 * 10
    const auto outputs = evaluateAll("gru", gates);
    ASSERT_EQ(outputs.size(), 2u);
    EXPECT_THAT(outputs[0], equals(reals({ 1, 1, 1 }, { -269 })));
    EXPECT_THAT(outputs[1], equals(column({ -269 })));
}

TEST(Gru, AddsItsBiases)
{
    // o = 103 + 7, and 7 is multiplied with r = 2 when the reset comes after the product; the other bias is not.
    const Arguments biased = with(gates, { { "bias", reals({ 0, 7, 0 }) } });
    EXPECT_THAT(evaluate("gru", biased), equals(reals({ 1, 1, 1 }, { -290 })));
    EXPECT_THAT(evaluate("gru", with(biased, { { "reset_after", true } })), equals(reals({ 1, 1, 1 }, { -311 })));
    EXPECT_THAT(evaluate("gru", with(biased, { { "reset_after", true }, { "input_bias", reals({ 1 }) } })),
        equals(reals({ 1, 1, 1 }, { -314 })));
}

TEST(Gru, ResetsTheStateBeforeOrAfterTheProduct)
{
    // r = (1, 0), z = 0: the new state is the candidate.
    const Arguments layer = with(gates,
        { { "initial_h", reals({ 1, 2 }, { 1, 1 }) }, { "weight_ih", column({ 1, 0, 0, 0, 0, 0 }) },
            { "weight_hh", reals({ 6, 2 }, { 0, 0, 0, 0, 1, 10, 100, 1000, 0, 0, 0, 0 }) } });
    EXPECT_THAT(evaluate("gru", layer), equals(reals({ 1, 1, 2 }, { 1, 100 })));
    EXPECT_THAT(evaluate("gru", with(layer, { { "reset_after", true } })), equals(reals({ 1, 1, 2 }, { 11, 0 })));
}

TEST(Gru, UsesSigmoidAndHyperbolicTangentByDefault)
{
    // r = z = 1 / 2, o = tanh(1): h' = tanh(1) / 2 + 1
    EXPECT_THAT(evaluate("gru",
                    { { "x", reals({ 1, 1, 1 }, { 1 }) }, { "initial_h", column({ 2 }) },
                        { "weight_ih", column({ 0, 0, 0 }) }, { "weight_hh", column({ 0, 1, 0 }) } }),
        isNear(reals({ 1, 1, 1 }, { 1.3807971f })));
}

TEST(Gru, RefusesOperandsThatDoNotFit)
{
    const auto refused = [](const Arguments& more) { return refusal("gru", with(gates, more)); };
    EXPECT_THAT(refused({ { "weight_ih", column({ 1, 2, 3, 4 }) } }), HasSubstr("\"weight_ih\""));
    EXPECT_THAT(refused({ { "bias", reals({ 1 }) } }), HasSubstr("\"bias\""));
    EXPECT_THAT(refused({ { "input_bias", reals({ 1, 2 }) } }), HasSubstr("\"input_bias\""));
    EXPECT_THAT(refused({ { "recurrent_activation", "cubic" } }), HasSubstr("cubic"));
}
