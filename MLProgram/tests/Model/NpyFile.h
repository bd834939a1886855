// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <MLProgram/MLMultiArray.h>

#include <filesystem>
#include <memory>

namespace MLProgram {

// Reads an array from a file in NumPy's format, version 1, little-endian, row-major.
// Throws std::runtime_error for anything else.
std::shared_ptr<MLMultiArray> readNpy(const std::filesystem::path& path);

} // namespace MLProgram
