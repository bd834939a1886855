// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace ModelStore {

// The digest of FIPS 180-4, fed piece by piece.
class SHA256 {
public:
    using Digest = std::array<uint8_t, 32>;

    SHA256(); // of no bytes yet
    ~SHA256();
    SHA256(SHA256&&) noexcept;
    SHA256& operator=(SHA256&&) noexcept;

    void update(std::span<const uint8_t> bytes);
    Digest finalize(); // once, at the end

    static Digest digest(std::span<const uint8_t> bytes);
    static std::string hex(std::span<const uint8_t> bytes); // in lower case

private:
    struct Context;
    std::unique_ptr<Context> context_;
};

} // namespace ModelStore
