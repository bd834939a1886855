// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ModelStore {

// Where a file lies in a content-addressed store. Today's transports fetch files from the hub itself; this is for one
// that does not.
struct XetPointer {
    std::string fileID; // 64 hexadecimal characters
    std::string refreshURL; // gives an access token for the store

    bool operator==(const XetPointer&) const = default;

    // From what the hub says of a file: its hash, the value of the Link header, and the address that was asked for,
    // "https://hub/owner/name/resolve/revision/file". Nothing unless the hash is one and an address can be had.
    static std::optional<XetPointer> from(
        const std::optional<std::string>& xetHash, const std::optional<std::string>& link, std::string_view resolveURL);
};

} // namespace ModelStore
