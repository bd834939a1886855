// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Plan/Schedule.h"

namespace MLProgram {

// Runs the steps that read nothing but constants, and keeps their results as constants: position projections, masks
// of a fixed window, folded norms. Constants that no remaining step reads, and that are not among `kept`, are
// given back.
void runConstantSteps(Schedule& schedule, const std::vector<View>& kept);

} // namespace MLProgram
