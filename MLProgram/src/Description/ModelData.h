// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Description/BundleDescription.h"

#include <cstddef>
#include <span>

namespace MLProgram {

// Reads coremldata.bin, which says what metadata.json says, and is there when that one is not. Little-endian:
//
//   u32 kind of model (502: an ML program), u32 version, 20 bytes
//   u64 length of a string, the string, u32 version, 28 bytes
//   u64 length of a message, the message (ModelDescription), a trailer
//
// Errors: MLModelError (invalidProgram) when it is not of that form, (unsupported) for an unknown element type.
BundleDescription readModelData(std::span<const std::byte> bytes);

} // namespace MLProgram
