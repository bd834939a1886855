// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/Definitions.h"

#include <algorithm>
#include <vector>

namespace MLProgram {

namespace {

constexpr Definitions (*subjects[])() noexcept = {
    activations,
    convolutions,
    einsums,
    elementwiseBinaries,
    elementwiseUnaries,
    fillings,
    gatedRecurrentLayers,
    gatherings,
    joinings,
    longShortTermLayers,
    normalisations,
    orderings,
    poolings,
    products,
    quantizations,
    rearrangings,
    recurrentLayers,
    reductions,
    reshapings,
    scatterings,
    slicings,
    spreadings,
    upsamplings,
};

const std::vector<OperationDefinition>& catalogue() noexcept
{
    static const std::vector<OperationDefinition> sorted = [] {
        std::vector<OperationDefinition> all;
        for (const auto subject : subjects)
            all.insert(all.end(), subject().begin(), subject().end());
        std::ranges::sort(all, {}, &OperationDefinition::name);
        return all;
    }();
    return sorted;
}

} // namespace

const OperationDefinition* findOperation(std::string_view name) noexcept
{
    const auto found = std::ranges::lower_bound(catalogue(), name, {}, &OperationDefinition::name);
    return found != catalogue().end() && found->name == name ? &*found : nullptr;
}

std::span<const OperationDefinition> allOperations() noexcept
{
    return catalogue();
}

} // namespace MLProgram
