// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/WeightStore.h"

namespace MLProgram {

namespace {

std::vector<int64_t> numbersOf(const WeightLayout& layout)
{
    std::vector<int64_t> numbers { layout.columns.count, layout.columns.stride };
    for (const auto& dimension : layout.depth)
        numbers.insert(numbers.end(), { dimension.count, dimension.stride });
    return numbers;
}

PackedMatrix pack(const Constant& weights, const WeightLayout& layout, int64_t panelWidth)
{
    if (weights.scalarType() == ScalarType::float16)
        return { reinterpret_cast<const PlatformSupport::Float16*>(weights.bytes().data()), layout, panelWidth };
    if (weights.scalarType() == ScalarType::float32)
        return { reinterpret_cast<const float*>(weights.bytes().data()), layout, panelWidth };
    const Tensor widened = weights.widened();
    return { widened.view().reals().data(), layout, panelWidth };
}

} // namespace

std::shared_ptr<const PackedMatrix> WeightStore::packed(const Constant& weights, const WeightLayout& layout)
{
    auto& matrix = matrices_[{ weights.bytes().data(), numbersOf(layout) }];
    if (matrix == nullptr) {
        matrix = std::make_shared<const PackedMatrix>(pack(weights, layout, panelWidth_));
        weights.releasePages();
    }
    return matrix;
}

} // namespace MLProgram
