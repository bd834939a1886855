// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/Product.h"
#include "Plan/Expression.h"
#include "Plan/Schedule.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace MLProgram {

// A product with its epilogue, ready for a step. What is bound keeps everything alive that the product points to;
// where its result and its working memory lie is filled in by the step.
struct ProductCall {
    std::vector<BufferIndex> reads;
    std::string name; // for the step
    int64_t depth = 0;
    std::function<std::shared_ptr<const Product>(const Memory& memory)> bind;
};

// The call of an expression with a product. Nothing when an operand lies so that the rows of the product do not
// find it.
std::optional<ProductCall> productCall(const Expression& expression);

} // namespace MLProgram
