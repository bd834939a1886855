// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Description/BundleDescription.h"

#include <string_view>

namespace MLProgram {

// Reads metadata.json: an array with one object, in which even numbers and flags are strings.
// Errors: MLModelError (invalidProgram) when it is not of that form, (unsupported) for an unknown element type.
BundleDescription readMetadata(std::string_view json);

} // namespace MLProgram
