// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ModelCatalog {

// The lowest major version of each system that can run a model.
struct OSFloor {
    int64_t iOS = 0;
    int64_t macOS = 0;
    int64_t tvOS = 0;
    int64_t visionOS = 0;
    int64_t watchOS = 0;

    bool operator==(const OSFloor&) const = default;

    static OSFloor packageFloor(); // the product's own
    static OSFloor multifunction(); // models of several functions
    static OSFloor mlx(); // models that need MLX

    // On this desktop: whether the processor has what the kernels need, x86-64-v3 or arm64. The numbers are data
    // about other systems.
    bool isSatisfiedHere() const;

    // What to tell the user of the model `name`; nothing when the floor is satisfied.
    std::optional<std::string> unmetReason(std::string_view name) const;
};

} // namespace ModelCatalog
