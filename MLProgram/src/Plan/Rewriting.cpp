// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/Rewriting.h"

namespace MLProgram {

void rewrite(Graph& graph)
{
    removeUnused(graph);
}

} // namespace MLProgram
