// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/ScalarType.h"
#include "Text/Lexer.h"

#include <cstddef>
#include <vector>

namespace MLProgram {

// Turns the words of a literal into stored elements, packed as Constant describes.
class ElementWriter {
public:
    // `elements` is how many are likely to come.
    ElementWriter(ScalarType type, size_t elements);

    // A float, hexadecimal or decimal, is rounded once, to the nearest, ties to even; an integer may stand for
    // it. An integer must be in the type's range. A boolean is true or false.
    // Errors: MLModelError (invalidProgram) for any other word.
    void append(const Token& token);

    std::vector<std::byte> finish();

private:
    void appendFloat(const Token& token);
    void appendInteger(const Token& token);
    void appendBits(uint64_t bits);
    template <typename Stored> void appendBytes(Stored value);

    ScalarType type_;
    std::vector<std::byte> bytes_;
    unsigned usedBits_ = 0; // of the last byte, when elements are below 8 bits
};

} // namespace MLProgram
