// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Plan/Graph.h"

#include <optional>
#include <span>

namespace MLProgram {

// The function as a graph for parameters of these shapes: types inferred, compressed weights decoded, everything
// small that follows from constants computed. Nothing when a shape depends on computed values, or the function
// keeps state: then only the interpreter can run it.
//
// Errors: MLModelError (invalidProgram) an operation does not fit its operands; (outOfMemory).
std::optional<Graph> buildGraph(const Function& function, std::span<const Shape> parameterShapes);

} // namespace MLProgram
