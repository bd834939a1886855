// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <filesystem>

namespace Sorvane {

// The size to which the weights are pinned, in bytes.
inline constexpr uint64_t cleanupWeightsSize = 484'219'808;

// Where the local model and the tools that run it lie below their directory.
struct CleanupFiles {
    std::filesystem::path directory;
    uint64_t weightsSize = cleanupWeightsSize; // bytes

    // Where the application keeps them: "Sorvane/Cleanup/S1-mini-Q4" in the user's application support, as it was
    // when this was first asked.
    static const CleanupFiles& ofThisUser();

    std::filesystem::path runtime() const { return directory / "runtime"; }
    std::filesystem::path generator() const { return runtime() / "llama-completion"; }
    std::filesystem::path tokeniser() const { return runtime() / "llama-tokenize"; }
    std::filesystem::path weights() const { return directory / "model.gguf"; }

    // Both tools can be executed and the weights have their size. Nothing is hashed.
    bool areInstalled() const;
};

// A file, not a directory, that this process may execute.
bool isExecutableFile(const std::filesystem::path& path);

} // namespace Sorvane
