// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Interpreter/BufferPool.h"
#include "Operations/Operation.h"
#include "Program/Executable.h"
#include "Program/Program.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace MLProgram {

// Runs a function statement by statement, in 32-bit arithmetic, by the plain meaning of each operation. It is the
// reference, and what runs a program whose shapes depend on data.
//
// Weights are decoded and widened, and statements without a computed operand are run, when it is made. States are
// zero then, and last as long as the interpreter.
class Interpreter final : public Executable {
public:
    // The function has passed checkSupport().
    // Errors: MLModelError (invalidProgram) when a weight or a constant statement is unsound; (outOfMemory).
    explicit Interpreter(std::shared_ptr<const Function> function);

    std::span<const TensorView> run(std::span<const TensorView> inputs) override;

private:
    // What a value is at the moment, and where it lies.
    struct Slot {
        TensorView view;
        Tensor storage; // of a constant or state
        int32_t buffer = BufferPool::none; // of a computed value; kept as the preference of the next run
        bool ownsBuffer = false; // at the moment
        bool isConstant = false;
        uint32_t lastUse = 0; // index behind the last statement that reads it
    };

    // A statement that is left for each run.
    struct Step {
        const Operation* operation;
        const OperationDefinition* definition; // null for reading and writing a state
        uint32_t index;
    };

    void findLastUses();
    void makeStates();
    void prepareOperations();
    void decode(const Operation& operation, std::vector<std::optional<Constant>>& constants);
    bool isConstant(const Operation& operation) const;
    void keepAsConstants(const Operation& operation);
    void keep(Slot& slot, const Tensor& tensor);

    void perform(const Step& step);
    void evaluate(const Step& step);
    void access(const Operation& operation);
    TensorView makeRoom(const Operation& operation, ValueIndex output, const TensorType& type);
    Operands operandsOf(const Operation& operation) const;
    void releaseUnused(const Step& step);
    void release(Slot& slot) noexcept;

    std::shared_ptr<const Function> function_;
    std::vector<Slot> slots_; // as Function::values
    std::vector<Step> steps_;
    BufferPool pool_;
    size_t keptBytes_ = 0;
    std::vector<TensorView> outputs_;
};

} // namespace MLProgram
