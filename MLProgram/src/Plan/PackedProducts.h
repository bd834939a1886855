// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Plan/Lowering.h"

#include <functional>
#include <memory>
#include <optional>

namespace MLProgram {

// The left-hand side of a product with packed weights: where it is read from, and how.
struct LeftSide {
    View view;
    int64_t rows = 0;
    std::function<std::shared_ptr<const LeftMatrix>(const Memory& memory)> bind;
};

// The value as rows of the given dimension; the other dimensions in order are the rows. Copied when it lies otherwise.
LeftSide matrixRows(Lowering& lowering, ValueIndex value, size_t columnDimension);

struct WeightOperand {
    ValueIndex value = 0; // a constant
    WeightLayout layout;
};

// Defines `output` as a product that waits for its epilogue. The bias has one value for each column.
void defineProduct(Lowering& lowering, ValueIndex output, LeftSide left, const WeightOperand& weight,
    size_t columnDimension, std::optional<ValueIndex> bias);

} // namespace MLProgram
