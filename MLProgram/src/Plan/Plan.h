// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/Pages.h"
#include "Plan/Lowering.h"
#include "Program/Executable.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace MLProgram {

// A function compiled for inputs of given shapes: steps that work on one arena, in order. What follows from
// constants alone was computed when the plan was made. Running it allocates nothing.
class Plan final : public Executable {
public:
    // Errors: MLModelError (outOfMemory).
    Plan(const Graph& graph, const KernelSet& kernels, WeightStore& weights);

    std::span<const TensorView> run(std::span<const TensorView> inputs) override;

    // Bytes that intermediate results share.
    size_t arenaSize() const noexcept { return arenaSize_; }
    size_t stepCount() const noexcept { return steps_.size(); }

    // What run() does, in order, for those who measure it. After a run any step may be repeated.
    struct BoundStep {
        std::string name;
        std::function<void()> action;
    };
    std::span<const BoundStep> steps() const noexcept { return steps_; }

private:
    size_t arenaSize_ = 0;
    Pages arena_;
    std::vector<Tensor> constants_;
    std::vector<BoundStep> steps_;
    std::vector<TensorView> inputs_;
    std::vector<TensorView> outputs_;
};

} // namespace MLProgram
