// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Constant.h"

#include <cstddef>
#include <cstring>
#include <span>

namespace MLProgram {

// The bits of `mask`, which holds one for each element, least significant first.
inline bool isSet(const Constant& mask, size_t element) noexcept
{
    return ((std::to_integer<unsigned>(mask.bytes()[element / 8]) >> (element % 8)) & 1U) != 0;
}

// Copies single stored elements of one type, of whatever width, into zeroed bytes.
class ElementCopy {
public:
    ElementCopy(ScalarType type, std::span<const std::byte> from, std::span<std::byte> to) noexcept
        : bits_(bitsOf(type))
        , from_(from)
        , to_(to)
    {
    }

    void copy(size_t from, size_t to) const noexcept
    {
        switch (bits_) {
        case 8:
            to_[to] = from_[from];
            return;
        case 16:
            std::memcpy(&to_[to * 2], &from_[from * 2], 2);
            return;
        case 32:
            std::memcpy(&to_[to * 4], &from_[from * 4], 4);
            return;
        default:
            copyBits(from * bits_, to * bits_);
        }
    }

private:
    void copyBits(size_t from, size_t to) const noexcept
    {
        for (size_t i = 0; i < bits_; ++i) {
            const unsigned bit = (std::to_integer<unsigned>(from_[(from + i) / 8]) >> ((from + i) % 8)) & 1U;
            to_[(to + i) / 8] |= static_cast<std::byte>(bit << ((to + i) % 8));
        }
    }

    size_t bits_;
    std::span<const std::byte> from_;
    std::span<std::byte> to_;
};

} // namespace MLProgram
