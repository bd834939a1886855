// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Operations/Operation.h"

#include <span>

namespace MLProgram {

using Definitions = std::span<const OperationDefinition>;

// The operations of each subject, one function for each source file of this folder.
Definitions activations() noexcept;
Definitions convolutions() noexcept;
Definitions einsums() noexcept;
Definitions elementwiseBinaries() noexcept;
Definitions elementwiseUnaries() noexcept;
Definitions fillings() noexcept;
Definitions gatedRecurrentLayers() noexcept;
Definitions gatherings() noexcept;
Definitions joinings() noexcept;
Definitions longShortTermLayers() noexcept;
Definitions normalisations() noexcept;
Definitions orderings() noexcept;
Definitions poolings() noexcept;
Definitions products() noexcept;
Definitions quantizations() noexcept;
Definitions rearrangings() noexcept;
Definitions recurrentLayers() noexcept;
Definitions reductions() noexcept;
Definitions reshapings() noexcept;
Definitions scatterings() noexcept;
Definitions slicings() noexcept;
Definitions spreadings() noexcept;
Definitions upsamplings() noexcept;

} // namespace MLProgram
