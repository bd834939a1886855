// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// The layer with a cell beside its state.
#include "Operations/RecurrentLayer.h"
#include "Operations/Scratch.h"

#include <limits>

namespace MLProgram {

namespace {

constexpr int64_t lstmGates = 4; // input, forget, output, candidate
constexpr int64_t lstmPeepholes = 3; // input, forget, output

TensorTypes inferLstm(const Operands& operands)
{
    activationOf(operands, "recurrent_activation", "sigmoid");
    activationOf(operands, "cell_activation", "tanh");
    activationOf(operands, "activation", "tanh");
    operands.require(operands.real("clip", 0) >= 0, "\"clip\" must not be negative");
    const RecurrentLayer layer = layerOf(operands);
    for (const RecurrentRun& run : layer.runs)
        requireShapeIfThere(operands, run.peephole, { lstmPeepholes * layer.units });
    requireShape(operands, "initial_c", layer.stateShape());
    TensorTypes types = inferLayer(operands, lstmGates);
    types.push_back(types.back());
    return types;
}

// i = gate(Wi x + Ri h + bi + pi c)         how much of the candidate enters the cell
// f = gate(Wf x + Rf h + bf + pf c)         how much of the cell stays
// z = cellActivation(Wz x + Rz h + bz)      the candidate
// c' = f c + i z                            the cell, held between -clip and clip
// o = gate(Wo x + Ro h + bo + po c')        how much of the cell shows
// h' = o activation(c')
class LstmStep {
public:
    LstmStep(const Operands& operands, const RecurrentLayer& layer, const RecurrentRun& run, std::span<float> cell)
        : weights_(operands, run)
        , peephole_(optionalRow(operands, run.peephole))
        , gate_(activationOf(operands, "recurrent_activation", "sigmoid"))
        , cellActivation_(activationOf(operands, "cell_activation", "tanh"))
        , activation_(activationOf(operands, "activation", "tanh"))
        , clip_(operands.real("clip", std::numeric_limits<float>::infinity()))
        , cell_(cell)
        , units_(static_cast<size_t>(layer.units))
        , sums_(scratchRow<float>(lstmGates * units_))
    {
    }

    void operator()(Floats x, std::span<float> h) const
    {
        for (size_t row = 0; row < sums_.size(); ++row)
            sums_[row] = weights_.sum(row, x, h);
        for (size_t unit = 0; unit < units_; ++unit) {
            float& c = cell_[unit];
            const float i = gate_(sums_[unit] + peep(0, unit, c));
            const float f = gate_(sums_[units_ + unit] + peep(1, unit, c));
            const float z = cellActivation_(sums_[3 * units_ + unit]);
            c = std::clamp(f * c + i * z, -clip_, clip_);
            const float o = gate_(sums_[2 * units_ + unit] + peep(2, unit, c));
            h[unit] = o * activation_(c);
        }
    }

private:
    float peep(size_t gate, size_t unit, float c) const
    {
        return peephole_.empty() ? 0 : peephole_[gate * units_ + unit] * c;
    }

    RecurrentWeights weights_;
    Floats peephole_; // [3 H], or empty
    Activation gate_;
    Activation cellActivation_;
    Activation activation_;
    float clip_;
    std::span<float> cell_;
    size_t units_;
    std::span<float> sums_; // [4 H]
};

void evaluateLstm(const Operands& operands, std::span<const TensorView> outputs)
{
    const RecurrentLayer layer = layerOf(operands);
    forEachRunAndRow(layer, [&](size_t run, int64_t row) {
        const std::span<float> cell = stateRow(outputs[2], row, run, layer.units);
        std::ranges::copy(stateRow(operands.tensor("initial_c"), row, run, layer.units), cell.begin());
        runSequence(operands, layer, run, row, outputs, LstmStep(operands, layer, layer.runs[run], cell));
    });
}

constexpr OperationDefinition definitions[] = {
    { "lstm", inferLstm, evaluateLstm },
};

} // namespace

Definitions longShortTermLayers() noexcept
{
    return definitions;
}

} // namespace MLProgram
