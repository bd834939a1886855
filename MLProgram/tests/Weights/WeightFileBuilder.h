// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

namespace MLProgram {

// Puts a file of weights together; what it writes is sound unless a test changes it.
class WeightFileBuilder {
public:
    WeightFileBuilder()
        : bytes_(64)
    {
        set<uint32_t>(4, 2);
    }

    // Appends a record and its data; returns the record's offset.
    uint64_t append(uint32_t typeCode, const std::vector<uint8_t>& data)
    {
        bytes_.resize((bytes_.size() + 63) / 64 * 64);
        const uint64_t offset = bytes_.size();
        bytes_.resize(offset + 64 + data.size());
        set<uint32_t>(0, get<uint32_t>(0) + 1);
        set<uint32_t>(offset, 0xDEADBEEF);
        set<uint32_t>(offset + 4, typeCode);
        set<uint64_t>(offset + 8, data.size());
        set<uint64_t>(offset + 16, offset + 64);
        std::ranges::copy(std::as_bytes(std::span(data)), bytes_.begin() + static_cast<std::ptrdiff_t>(offset) + 64);
        return offset;
    }

    template <typename Number> void set(size_t offset, Number number)
    {
        std::memcpy(bytes_.data() + offset, &number, sizeof(number));
    }

    std::vector<std::byte>& bytes() { return bytes_; }
    std::string text() const { return { reinterpret_cast<const char*>(bytes_.data()), bytes_.size() }; }

private:
    template <typename Number> Number get(size_t offset) const
    {
        Number number;
        std::memcpy(&number, bytes_.data() + offset, sizeof(number));
        return number;
    }

    std::vector<std::byte> bytes_;
};

} // namespace MLProgram
