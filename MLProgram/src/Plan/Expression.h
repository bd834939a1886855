// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/LeftMatrix.h"
#include "Kernels/PackedMatrix.h"
#include "Kernels/RowProgram.h"
#include "Plan/Schedule.h"
#include "Plan/View.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace MLProgram {

// A product with packed weights that has not been put into the schedule yet, so that element-wise work on its
// result can still become its epilogue. The result is dense: the other dimensions in order, then the columns.
struct PendingProduct {
    std::vector<BufferIndex> reads;
    std::function<std::shared_ptr<const LeftMatrix>(const Memory& memory)> left;
    std::shared_ptr<const PackedMatrix> right;
    std::optional<View> bias; // one value for each column, side by side
    int64_t rows = 0;
    size_t columnDimension = 0; // of the result's shape
};

// An element-wise computation that has not been put into the schedule yet: terms over values in memory, or over a
// product that is just being computed.
struct Expression {
    // An input when negative: -1 is inputs[0]; else a term.
    using Reference = int;

    struct Term {
        RowOperation operation = RowOperation::copy;
        Reference a = -1;
        Reference b = -1;
        Reference c = -1;
    };

    Shape shape;
    std::vector<View> inputs; // broadcast to the shape
    std::vector<Term> terms; // the last is the result; none: the result is the product itself

    // When set, inputs[0] stands for the product's result and lies nowhere.
    std::shared_ptr<const PendingProduct> product;
};

// The expression with temporary results assigned to as few slots as possible. Nothing when it takes too many.
std::optional<RowProgram> rowProgramOf(const Expression& expression);

// Appends the terms of `part` to those of `whole`, and gives the reference of its result. A part that contains a
// product is merged before anything else.
Expression::Reference merge(Expression& whole, const Expression& part);

} // namespace MLProgram
