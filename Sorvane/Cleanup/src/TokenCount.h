// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <string_view>

namespace Sorvane {

// How many tokens the tokeniser counted, which writes "[260, 11, 268]". Throws CleanupFailure (invalidOutput) for
// anything but an array of integers with blanks around it.
size_t tokenCount(std::string_view output);

} // namespace Sorvane
