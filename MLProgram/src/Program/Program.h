// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Constant.h"
#include "Program/ValueType.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace MLProgram {

// Index into Function::values.
using ValueIndex = uint32_t;

// Something that is assigned once: a parameter, an output of an operation, a constant.
struct Value {
    std::string name {}; // unique in its function; empty for a value written in place, among the arguments
    ValueType type {};

    // Known from the text: the value of a `const`, or one written in place. The type is then a tensor's, and
    // without open dimensions.
    std::optional<Constant> constant {};
};

struct Argument {
    std::string name {};

    // One; for a variadic parameter, as the `values` of concat, any number.
    std::vector<ValueIndex> values {};
};

// One statement of a function. A `const` is none: its output is a value with a constant.
struct Operation {
    std::string name;

    // What the operation was written for: 15 to 18 and later.
    int opset = 0;

    // By name, in the text's order. The parameters of operations that decode compressed weights (constexpr_...)
    // stand here even if the text has them as attributes; other attributes are dropped.
    std::vector<Argument> arguments;

    std::vector<ValueIndex> outputs;

    // It has blocks of statements of its own (cond, while_loop), which are not read.
    bool hasNestedBlocks = false;

    uint32_t line = 0; // of the text, from 1

    const Argument* argument(std::string_view parameter) const noexcept; // null when absent
};

// Where the operation stands, as errors say it: "model.mil, line 12".
std::string place(const Operation& operation);

// Which shapes the input of a function may have, when its dimensions are open.
struct ShapeFlexibility {
    std::vector<int64_t> defaultShape;

    // At most one of the two is non-empty, as in MLMultiArrayConstraint.
    std::vector<std::pair<int64_t, int64_t>> ranges;
    std::vector<std::vector<int64_t>> enumeratedShapes;
};

// One function: statements in an order in which each uses only what stands before it.
struct Function {
    std::string name;
    int opset = 0;
    std::vector<Value> values;
    std::vector<ValueIndex> parameters;
    std::vector<Operation> operations;
    std::vector<ValueIndex> outputs; // in order; may name a parameter, a constant or one value twice

    std::map<std::string, ShapeFlexibility> flexibility; // by parameter name
};

// The text of a compiled model stage, read. Weights are not copied: constants refer to the mapped file.
//
// A program that exists is sound in form: every name is defined before its use and once only, every shape has
// a size that fits the runtime's limits, every constant has the declared type. Whether the operands fit the
// operations is for the operations to say.
struct Program {
    std::vector<Function> functions;

    const Function* function(std::string_view name) const noexcept; // null when absent
};

} // namespace MLProgram
