// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ModelStore {

// One model at one revision, with the files asked of it.
struct ModelSpec {
    std::string repo; // "owner/name"
    std::string revision;
    std::vector<std::string> files; // repository paths, in order; a directory ends in "/"
    std::optional<std::string> cacheDirectory; // the model's own directory, in place of the managed cache
};

} // namespace ModelStore
