// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Text/TokenStream.h"

#include "Text/TextError.h"

#include <charconv>
#include <string>

namespace MLProgram {
namespace {

// Longer words are cut in errors.
constexpr size_t quotedLength = 40;

std::string quoted(const Token& token)
{
    if (token.kind == Token::Kind::end)
        return "the end of the text";
    const std::string_view text = token.text;
    return "\"" + std::string(text.substr(0, quotedLength)) + (text.size() > quotedLength ? "…" : "") + "\"";
}

} // namespace

TokenStream::TokenStream(std::string_view text)
    : lexer_(text)
    , current_(lexer_.next())
    , following_(lexer_.next())
{
}

Token TokenStream::take()
{
    const Token taken = current_;
    current_ = following_;
    following_ = lexer_.next();
    return taken;
}

bool TokenStream::accept(char symbol)
{
    if (!at(symbol))
        return false;
    take();
    return true;
}

void TokenStream::expect(char symbol)
{
    if (!accept(symbol))
        failExpecting({ &symbol, 1 });
}

void TokenStream::expectArrow()
{
    if (current_.kind != Token::Kind::arrow)
        failExpecting("->");
    take();
}

void TokenStream::expectWord(std::string_view word)
{
    if (current_.kind != Token::Kind::identifier || current_.text != word)
        failExpecting(word);
    take();
}

std::string_view TokenStream::takeIdentifier(std::string_view what)
{
    if (current_.kind != Token::Kind::identifier)
        failExpecting(what);
    return take().text;
}

int64_t TokenStream::takeInteger(std::string_view what)
{
    const std::string_view text = current_.text;
    int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (current_.kind != Token::Kind::number || error != std::errc() || end != text.data() + text.size())
        failExpecting(what);
    take();
    return value;
}

void TokenStream::failExpecting(std::string_view what) const
{
    failAt(current_, std::string(what) + " is expected, not " + quoted(current_));
}

} // namespace MLProgram
