// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <optional>
#include <string>

namespace Sorvane {

// What became of a transcript that was to be tidied.
struct CleanupResult {
    std::string text; // what everybody goes on with
    bool usedOriginal = true; // `text` is the transcript as it was
    std::optional<std::string> message; // the one line that tells the user why, where there is something to tell

    bool operator==(const CleanupResult&) const = default;
};

} // namespace Sorvane
