// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/MappedFile.h>

#include <filesystem>
#include <memory>
#include <string_view>

namespace MLProgram {

// Maps a file of a bundle; `name` is its path within the bundle, as "weights/weight.bin".
// Errors: MLModelError (io), with the name in front.
std::shared_ptr<const PlatformSupport::MappedFile> mapBundleFile(
    const std::filesystem::path& bundle, const std::filesystem::path& name);

// The bytes as text.
std::string_view textOf(const PlatformSupport::MappedFile& file) noexcept;

} // namespace MLProgram
