// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/PackedMatrix.h"
#include "Program/Constant.h"

#include <cstddef>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

namespace MLProgram {

// The packed weights of a model, shared by the plans for its different shapes: each weight is packed when the
// first plan needs it.
class WeightStore {
public:
    explicit WeightStore(int64_t panelWidth)
        : panelWidth_(panelWidth)
    {
    }

    // 16-bit weights stay 16-bit; every other type is held in 32 bits.
    std::shared_ptr<const PackedMatrix> packed(const Constant& weights, const WeightLayout& layout);

private:
    // The bytes of a constant stay where they are while the model lives; layouts are compared by their strides.
    using Key = std::tuple<const std::byte*, std::vector<int64_t>>;

    int64_t panelWidth_;
    std::map<Key, std::shared_ptr<const PackedMatrix>> matrices_;
};

} // namespace MLProgram
