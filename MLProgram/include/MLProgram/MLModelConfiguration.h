// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string>

namespace MLProgram {

// Where, and so how exactly, a model may be computed.
//
// cpuOnly is the reference: 32-bit arithmetic throughout. The others allow whatever faster precision the
// processor has, within the tolerance stated in docs/Precision.md.
enum class MLComputeUnits { cpuOnly, cpuAndGPU, all, cpuAndNeuralEngine };

struct MLModelConfiguration {
    MLComputeUnits computeUnits = MLComputeUnits::all;

    // Function of a multi-function model; empty takes the model's default.
    std::string functionName;
};

} // namespace MLProgram
