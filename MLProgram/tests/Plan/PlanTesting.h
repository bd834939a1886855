// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/KernelTesting.h"
#include "Plan/GraphBuilder.h"
#include "Plan/Plan.h"
#include "Program/Program.h"

#include <memory>
#include <vector>

namespace MLProgram {

// Random inputs of a function whose shapes are fixed.
std::vector<Tensor> randomInputs(const Function& function, unsigned seed = 1);

std::vector<TensorView> viewsOf(const std::vector<Tensor>& tensors);

// A plan with packed weights of its own.
struct TestPlan {
    WeightStore weights;
    std::unique_ptr<Plan> plan;
};

// Compiles the function for its declared shapes; fails the test when that cannot be done.
std::unique_ptr<TestPlan> planOf(const Function& function, const KernelSet& kernels = kernelsOfThisProcessor());

// Runs the function by plan and by interpreter on these inputs, and expects equal outputs.
void expectPlanAgreesWithInterpreter(
    const Function& function, const std::vector<Tensor>& inputs, float tolerance = 2e-4f);

// Runs the function by plan and by interpreter, twice each with different inputs, and expects equal outputs.
void expectPlanAgreesWithInterpreter(
    const Function& function, const KernelSet& kernels = kernelsOfThisProcessor(), float tolerance = 2e-4f);

} // namespace MLProgram
