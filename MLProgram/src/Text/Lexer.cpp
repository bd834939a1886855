// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Text/Lexer.h"

#include "Text/TextError.h"

namespace MLProgram {
namespace {

// The text is ASCII outside of strings, whatever the locale.
constexpr bool isDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

constexpr bool isLetter(char c) noexcept
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

constexpr bool continuesIdentifier(char c) noexcept
{
    return isLetter(c) || isDigit(c) || c == '@';
}

constexpr std::string_view symbols = "()[]{}<>,;=?";

} // namespace

Token Lexer::next()
{
    skipBlanks();
    if (offset_ == text_.size())
        return take(Token::Kind::end, 0);
    const char first = text_[offset_];
    const char second = offset_ + 1 < text_.size() ? text_[offset_ + 1] : '\0';
    if (isLetter(first)) {
        size_t length = 1;
        while (offset_ + length < text_.size() && continuesIdentifier(text_[offset_ + length]))
            ++length;
        return take(Token::Kind::identifier, length);
    }
    if (isDigit(first) || (first == '-' && (isDigit(second) || isLetter(second))))
        return take(Token::Kind::number, numberLength());
    if (first == '"')
        return takeString();
    if (first == '-' && second == '>')
        return take(Token::Kind::arrow, 2);
    if (symbols.find(first) != std::string_view::npos)
        return take(Token::Kind::symbol, 1);
    failAt(take(Token::Kind::symbol, 1), "this byte begins no word");
}

void Lexer::skipBlanks() noexcept
{
    for (; offset_ < text_.size(); ++offset_) {
        switch (text_[offset_]) {
        case '\n':
            ++line_;
            lineStart_ = offset_ + 1;
            break;
        case ' ':
        case '\t':
        case '\r':
            break;
        default:
            return;
        }
    }
}

Token Lexer::take(Token::Kind kind, size_t length) noexcept
{
    const Token token { kind, text_.substr(offset_, length), line_, static_cast<uint32_t>(offset_ - lineStart_ + 1) };
    offset_ += length;
    return token;
}

Token Lexer::takeString()
{
    const Token quote = take(Token::Kind::string, 1);
    size_t length = 0;
    for (; offset_ + length < text_.size() && text_[offset_ + length] != '"'; ++length) {
        if (text_[offset_ + length] == '\\')
            ++length;
    }
    if (offset_ + length >= text_.size())
        failAt(quote, "this string does not end");
    const std::string_view content = text_.substr(offset_, length);
    for (size_t i = 0; i < length; ++i) {
        if (content[i] == '\n') {
            ++line_;
            lineStart_ = offset_ + i + 1;
        }
    }
    offset_ += length + 1;
    return { Token::Kind::string, content, quote.line, quote.column };
}

// Digits, letters and points; a sign only behind the letter of an exponent, which is p after 0x and e elsewhere.
size_t Lexer::numberLength() const noexcept
{
    size_t length = 1;
    bool isHexadecimal = false;
    for (; offset_ + length < text_.size(); ++length) {
        const char c = text_[offset_ + length];
        const char before = text_[offset_ + length - 1];
        const bool isSign = c == '+' || c == '-';
        const bool followsExponent = isHexadecimal ? before == 'p' || before == 'P' : before == 'e' || before == 'E';
        if (!isDigit(c) && !isLetter(c) && c != '.' && !(isSign && followsExponent))
            break;
        isHexadecimal = isHexadecimal || c == 'x' || c == 'X';
    }
    return length;
}

} // namespace MLProgram
