// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Plan/Plan.h"
#include "Program/Executable.h"
#include "Program/Program.h"

#include <functional>
#include <list>
#include <memory>
#include <vector>

namespace MLProgram {

// A function that is compiled for the shapes it is run with. A few plans are kept, the latest used; they share the
// packed weights. Shapes for which no plan can be made, since they depend on computed values, run in the fallback.
class PlannedFunction final : public Executable {
public:
    using Fallback = std::function<std::unique_ptr<Executable>()>;

    // Plans for the declared shapes at once, when they are fixed: loading pays for it, not the first run.
    //
    // Errors: MLModelError (invalidProgram, outOfMemory).
    PlannedFunction(std::shared_ptr<const Function> function, Fallback fallback,
        const KernelSet& kernels = kernelsOfThisProcessor());

    std::span<const TensorView> run(std::span<const TensorView> inputs) override;

private:
    struct Entry {
        std::vector<Shape> shapes;
        std::unique_ptr<Executable> executable; // null: the fallback
    };

    Entry& entryFor(std::span<const TensorView> inputs);
    Entry& compile(std::vector<Shape> shapes);
    Executable& fallback();

    std::shared_ptr<const Function> function_;
    Fallback makeFallback_;
    const KernelSet& kernels_;
    WeightStore weights_;
    std::list<Entry> entries_; // the latest used first
    std::unique_ptr<Executable> fallback_;
};

} // namespace MLProgram
