// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// The plain recurrent layer.
#include "Operations/RecurrentLayer.h"
#include "Operations/Scratch.h"

namespace MLProgram {

namespace {

TensorTypes inferPlainLayer(const Operands& operands)
{
    activationOf(operands, "activation", "tanh");
    return inferLayer(operands, 1);
}

// h' = activation(W x + R h + b)
void evaluatePlainLayer(const Operands& operands, std::span<const TensorView> outputs)
{
    const RecurrentLayer layer = layerOf(operands);
    const Activation activation = activationOf(operands, "activation", "tanh");
    const std::span<float> next = scratchRow<float>(static_cast<size_t>(layer.units));
    forEachRunAndRow(layer, [&](size_t run, int64_t row) {
        const RecurrentWeights weights(operands, layer.runs[run]);
        runSequence(operands, layer, run, row, outputs, [&](Floats x, std::span<float> h) {
            for (size_t unit = 0; unit < h.size(); ++unit)
                next[unit] = activation(weights.sum(unit, x, h));
            std::ranges::copy(next, h.begin());
        });
    });
}

constexpr OperationDefinition definitions[] = {
    { "rnn", inferPlainLayer, evaluatePlainLayer },
};

} // namespace

Definitions recurrentLayers() noexcept
{
    return definitions;
}

} // namespace MLProgram
