// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>

// How often the calling thread has allocated memory with new so far.
size_t allocationCount() noexcept;
