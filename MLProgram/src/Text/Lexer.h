// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <string_view>

namespace MLProgram {

// One word of the program text.
struct Token {
    enum class Kind : uint8_t {
        identifier, // also the words inf, nan, true, false
        string, // `text` is what stands between the quotes, escapes not yet replaced
        number, // integer, decimal or hexadecimal float, -inf; its form is not checked here
        symbol, // one of ( ) [ ] { } < > , ; = ?
        arrow, // ->
        end
    };

    Kind kind = Kind::end;
    std::string_view text; // refers to the program text
    uint32_t line = 1;
    uint32_t column = 1; // in bytes, from 1

    bool is(char symbol) const noexcept { return kind == Kind::symbol && text.front() == symbol; }
};

// Cuts the program text into words. A line may be hundreds of KB long, so that nothing here works by lines.
class Lexer {
public:
    explicit Lexer(std::string_view text) noexcept
        : text_(text)
    {
    }

    // Gives `end` again and again once the text is used up.
    // Errors: MLModelError (invalidProgram) for a byte that begins no word and for a string that does not end.
    Token next();

private:
    void skipBlanks() noexcept;
    Token take(Token::Kind kind, size_t length) noexcept;
    Token takeString();
    size_t numberLength() const noexcept;

    std::string_view text_;
    size_t offset_ = 0;
    size_t lineStart_ = 0;
    uint32_t line_ = 1;
};

} // namespace MLProgram
