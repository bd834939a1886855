// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Plan/Graph.h"

namespace MLProgram {

// Expresses compound operations by simpler ones that have fast kernels, and drops what nobody uses:
//   batch_norm with constant statistics    a multiplication and an addition
//   lstm over few steps                    products, gates, element-wise operations
void rewrite(Graph& graph);

} // namespace MLProgram
