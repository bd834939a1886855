// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

namespace MLProgram {

// 1 / (1 + e^-x), which the gates of the recurrent operations use too.
float sigmoidOf(float x) noexcept;

} // namespace MLProgram
