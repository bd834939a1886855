// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/FileSystem.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ModelStore {

// What was asked for when a model was stored, and the files that came. It is written last: a model with a
// manifest is complete.
//
// Stored as text of lines without a final line feed, with tabs between fields; docs/formats/Manifest.md has it
// in full:
//
//     TRW1
//     R<tab>weights/
//     F<tab>weights/a.bin<tab>7340032<tab><64 hexadecimal digits>
struct Manifest {
    struct Entry {
        std::string path;
        int64_t size = 0; // bytes
        std::string sha256; // lowercase hexadecimal

        bool operator==(const Entry&) const = default;
    };

    std::vector<std::string> requested; // repository paths in the order they were asked for
    std::vector<Entry> entries;

    bool operator==(const Manifest&) const = default;

    Bytes serialized() const;

    // Nothing for bytes that are no manifest. Sizes and digests are not judged here.
    static std::optional<Manifest> parse(const Bytes& bytes);
};

} // namespace ModelStore
