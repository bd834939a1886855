// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/ModelSpec.h>
#include <ModelStore/Paths.h>

#include <algorithm>
#include <string>

namespace ModelStore {

// Below a model's directory; docs/formats/Manifest.md.
inline constexpr const char* metaDirectory = ".trw-meta";
inline constexpr const char* manifestFile = ".trw-meta/manifest";

// Nothing of the spec leads out of the model's directory, or changes what is asked of the hub.
inline bool isSafe(const ModelSpec& spec)
{
    return isSafeRelativePath(spec.repo) && isSafeRelativePath(spec.revision)
        && std::ranges::all_of(spec.files, isSafeRelativePath);
}

// The directory that a path lies in.
inline std::string directoryAbove(const std::string& path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash);
}

} // namespace ModelStore
