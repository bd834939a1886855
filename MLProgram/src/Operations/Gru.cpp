// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// The layer with a reset gate and one that keeps the state.
#include "Operations/RecurrentLayer.h"
#include "Operations/Scratch.h"

namespace MLProgram {

namespace {

constexpr int64_t gruGates = 3; // reset, candidate, keep

TensorTypes inferGru(const Operands& operands)
{
    activationOf(operands, "recurrent_activation", "sigmoid");
    activationOf(operands, "activation", "tanh");
    operands.flag("reset_after", false);
    requireShapeIfThere(operands, "input_bias", { layerOf(operands).units });
    return inferLayer(operands, gruGates);
}

// r = gate(Wr x + Rr h + br)                 how much of the old state the candidate sees
// z = gate(Wz x + Rz h + bz)                 how much of the old state stays
// o = activation(Wo x + Ro (r h) + bo + bi)  the candidate; with reset_after activation(Wo x + r (Ro h + bo) + bi)
// h' = (1 - z) o + z h                       where bi is "input_bias"
class GruStep {
public:
    GruStep(const Operands& operands, const RecurrentLayer& layer, const RecurrentRun& run)
        : weights_(operands, run)
        , gate_(activationOf(operands, "recurrent_activation", "sigmoid"))
        , activation_(activationOf(operands, "activation", "tanh"))
        , resetsAfter_(operands.flag("reset_after", false))
        , inputBias_(optionalRow(operands, "input_bias"))
        , units_(static_cast<size_t>(layer.units))
        , scratch_(scratchRow<float>(4 * units_))
    {
    }

    void operator()(Floats x, std::span<float> h) const
    {
        const auto reset = scratch_.subspan(0, units_);
        const auto visible = scratch_.subspan(units_, units_);
        const auto candidate = scratch_.subspan(2 * units_, units_);
        const auto keep = scratch_.subspan(3 * units_, units_);
        for (size_t unit = 0; unit < units_; ++unit) {
            reset[unit] = gate_(weights_.sum(unit, x, h));
            keep[unit] = gate_(weights_.sum(2 * units_ + unit, x, h));
            visible[unit] = reset[unit] * h[unit];
        }
        for (size_t unit = 0; unit < units_; ++unit)
            candidate[unit] = activation_(
                resetsAfter_ ? resetAfterProduct(unit, x, h, reset[unit]) : resetBefore(unit, x, visible));
        for (size_t unit = 0; unit < units_; ++unit)
            h[unit] = (1 - keep[unit]) * candidate[unit] + keep[unit] * h[unit];
    }

private:
    float biasOfInput(size_t unit) const { return inputBias_.empty() ? 0 : inputBias_[unit]; }

    float resetBefore(size_t unit, Floats x, Floats visible) const
    {
        return weights_.sum(units_ + unit, x, visible) + biasOfInput(unit);
    }

    float resetAfterProduct(size_t unit, Floats x, Floats h, float reset) const
    {
        const size_t row = units_ + unit;
        return weights_.ofInput(row, x) + reset * (weights_.ofState(row, h) + weights_.ofBias(row)) + biasOfInput(unit);
    }

    RecurrentWeights weights_;
    Activation gate_;
    Activation activation_;
    bool resetsAfter_;
    Floats inputBias_;
    size_t units_;
    std::span<float> scratch_;
};

void evaluateGru(const Operands& operands, std::span<const TensorView> outputs)
{
    const RecurrentLayer layer = layerOf(operands);
    forEachRunAndRow(layer, [&](size_t run, int64_t row) {
        runSequence(operands, layer, run, row, outputs, GruStep(operands, layer, layer.runs[run]));
    });
}

constexpr OperationDefinition definitions[] = {
    { "gru", inferGru, evaluateGru },
};

} // namespace

Definitions gatedRecurrentLayers() noexcept
{
    return definitions;
}

} // namespace MLProgram
