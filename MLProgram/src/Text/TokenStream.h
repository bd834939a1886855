// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Text/Lexer.h"

#include <MLProgram/MLModelError.h>

#include <string_view>

namespace MLProgram {

// The program text as a reader walks through it: the word at hand, and the one after it.
class TokenStream {
public:
    explicit TokenStream(std::string_view text);

    const Token& current() const noexcept { return current_; }
    const Token& following() const noexcept { return following_; }
    Token take(); // the current one, and moves on

    bool at(char symbol) const noexcept { return current_.is(symbol); }
    bool accept(char symbol); // moves on if the current word is `symbol`
    void expect(char symbol);
    void expectArrow();
    void expectWord(std::string_view word);
    std::string_view takeIdentifier(std::string_view what); // `what` is expected: "the name of a function"
    int64_t takeInteger(std::string_view what);

    // Reads `item()` again and again, separated by commas, up to and with `close`. None is fine.
    template <typename Item> void readList(char close, Item item)
    {
        if (accept(close))
            return;
        do
            item();
        while (accept(','));
        expect(close);
    }

    // Throws MLModelError (invalidProgram) for the current word: "… is expected, not …".
    [[noreturn]] void failExpecting(std::string_view what) const;

private:
    Lexer lexer_;
    Token current_;
    Token following_;
};

} // namespace MLProgram
