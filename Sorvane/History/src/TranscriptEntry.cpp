// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WholeSeconds.h"

#include <Sorvane/TranscriptEntry.h>

#include <cinttypes>
#include <cstdio>

namespace Sorvane {

std::string TranscriptEntry::durationLabel() const
{
    const int64_t seconds = wholeSeconds(duration);
    char label[32] = {};
    std::snprintf(label, sizeof label, "%" PRId64 ":%02" PRId64, seconds / 60, seconds % 60);
    return label;
}

} // namespace Sorvane
