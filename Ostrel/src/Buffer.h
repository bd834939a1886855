// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <MLProgram/MLMultiArray.h>
#include <PlatformSupport/Float16.h>

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace Ostrel {

// A tensor of 16-bit floats that the engine and a stage share: made once, zero-filled, and bound for good.
class Buffer {
public:
    // Errors: MLModelError
    explicit Buffer(std::vector<int64_t> shape);

    const std::shared_ptr<MLProgram::MLMultiArray>& array() const noexcept { return array_; }
    std::span<PlatformSupport::Float16> values() const noexcept { return values_; }

    // The part of the values that belongs to one index of the first dimension.
    std::span<PlatformSupport::Float16> slice(size_t index) const;

    void fill(PlatformSupport::Float16 value) const;

private:
    std::shared_ptr<MLProgram::MLMultiArray> array_;
    std::span<PlatformSupport::Float16> values_;
};

} // namespace Ostrel
