// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Description/BundleDescription.h"
#include "Program/Program.h"

#include <MLProgram/MLModelDescription.h>

namespace MLProgram {

// What the function takes and gives: as `described`, if that is not null, else as its own signature says; shapes
// that the description leaves out are the signature's.
//
// Errors: MLModelError (invalidProgram) when the description names a feature that the function does not have, or
//         shapes that it cannot have.
MLModelDescription completeDescription(const Function& function, const MLModelDescription* described);

} // namespace MLProgram
