// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Program.h"

#include <string_view>

namespace MLProgram {

// What a program that stops between calls keeps in its states; these two are the program's own, not the
// catalogue's.
constexpr std::string_view readStateOperation = "read_state"; // (input) -> a copy of the state
constexpr std::string_view writeStateOperation = "write_state"; // (data, input)

// Refuses a function that this runtime cannot run, before anything of it is.
//
// Errors: MLModelError (unsupported) when it uses operations that do not exist here, or nested blocks, all of them
//         named, sorted; or when an operand is a list; (invalidProgram) when a state is used as a tensor, or the
//         weights take more memory than there could be.
void checkSupport(const Function& function);

} // namespace MLProgram
