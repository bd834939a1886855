// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace ModelStore {

// The systems that a model may be published for, each with its own list of files.
enum class ModelPlatform { apple, android, linux, windows, web };

inline constexpr std::array allModelPlatforms { ModelPlatform::apple, ModelPlatform::android, ModelPlatform::linux,
    ModelPlatform::windows, ModelPlatform::web };

// Whose files this product takes. It runs the bundles of the first platform itself, on every desktop, so this does not
// follow from the host.
inline constexpr ModelPlatform currentModelPlatform = ModelPlatform::apple;

std::string_view rawValue(ModelPlatform platform); // "apple", "android", ...
std::optional<ModelPlatform> modelPlatform(std::string_view rawValue);

} // namespace ModelStore
