// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <memory>

namespace MLProgram {

// Zeroed memory straight from the system. A large piece is asked for in large pages: fewer faults while it is filled,
// fewer address translations while it is read.
class Pages {
public:
    Pages() = default;

    // Errors: MLModelError outOfMemory
    explicit Pages(size_t size);

    std::byte* data() const noexcept { return pages_.get(); }

private:
    struct Unmap {
        size_t size;
        void operator()(std::byte* pages) const noexcept;
    };
    std::unique_ptr<std::byte, Unmap> pages_ { nullptr, Unmap { 0 } };
};

} // namespace MLProgram
