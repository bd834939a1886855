// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/KernelSet.h"
#include "Kernels/Vector/VectorRows.h"
#include "Kernels/Vector/VectorTile.h"

namespace MLProgram {

// The kernels of one instruction set.
template <typename Vector> constexpr KernelSet vectorKernels()
{
    static_assert(Vector::tileRows <= maximumTileRows && 2 * Vector::width <= maximumPanelWidth);
    static_assert(Vector::width <= uniformCopies);
    return {
        .name = Vector::name,
        .tileRows = Vector::tileRows,
        .panelWidth = 2 * Vector::width,
        .tile = multiplyTileOf<Vector, float>,
        .tileOfHalves = multiplyTileOf<Vector, PlatformSupport::Float16>,
        .widen = widenHalves<Vector>,
        .rowInstruction = rowInstruction<Vector>,
        .softmax = softmaxRow<Vector>,
        .layerNorm = layerNormRow<Vector>,
        .depthwise = depthwisePosition<Vector>,
    };
}

} // namespace MLProgram
