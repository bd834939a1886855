// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Text/Lexer.h"

#include "Text/TextTesting.h"

#include <gmock/gmock.h>

namespace MLProgram {
namespace {

using testing::ElementsAre;

std::vector<std::string> words(std::string_view text)
{
    std::vector<std::string> found;
    Lexer lexer(text);
    for (Token token = lexer.next(); token.kind != Token::Kind::end; token = lexer.next())
        found.emplace_back(token.text);
    return found;
}

Token first(std::string_view text)
{
    return Lexer(text).next();
}

TEST(Lexer, SeparatesWordsBySymbolsAndBlanks)
{
    EXPECT_THAT(words("tensor<fp16, [1,?]> x_1@2=relu(x\t=\r\nx0);"),
        ElementsAre("tensor", "<", "fp16", ",", "[", "1", ",", "?", "]", ">", "x_1@2", "=", "relu", "(", "x", "=", "x0",
            ")", ";"));
}

TEST(Lexer, TellsAnArrowFromANegativeNumber)
{
    EXPECT_THAT(words("}->(-1)"), ElementsAre("}", "->", "(", "-1", ")"));
    EXPECT_EQ(first("->").kind, Token::Kind::arrow);
    EXPECT_EQ(first("-1").kind, Token::Kind::number);
}

TEST(Lexer, TakesEveryFormOfNumberAsOneWord)
{
    for (const std::string number : { "0", "-12", "1.3", "4.096e-05", "1E+3", "0x1p+0", "-0x1.8p-3", "-inf", "-nan" }) {
        EXPECT_THAT(words(number + ","), ElementsAre(number, ","));
        EXPECT_EQ(first(number).kind, Token::Kind::number);
    }
}

TEST(Lexer, KeepsTheSignOfANeighbourApart)
{
    EXPECT_THAT(words("1-2"), ElementsAre("1", "-2"));
    EXPECT_THAT(words("0x1e-2"), ElementsAre("0x1e", "-2")) << "e is a digit of a hexadecimal number";
}

TEST(Lexer, LeavesEscapesInStrings)
{
    EXPECT_THAT(words(R"("a \"b\" \\" "")"), ElementsAre(R"(a \"b\" \\)", ""));
}

TEST(Lexer, CountsLinesAndColumns)
{
    Lexer lexer("a\n  bc \"x\ny\" d");
    lexer.next();
    const Token second = lexer.next();
    EXPECT_EQ(second.line, 2U);
    EXPECT_EQ(second.column, 3U);
    lexer.next();
    const Token last = lexer.next();
    EXPECT_EQ(last.line, 3U);
    EXPECT_EQ(last.column, 4U);
}

TEST(Lexer, RefusesWhatBeginsNoWord)
{
    EXPECT_EQ(errorOf([] { words("a\n #"); }, MLModelError::Case::invalidProgram),
        "model.mil, line 2, column 2: this byte begins no word");
    EXPECT_EQ(errorOf([] { words("a - b"); }, MLModelError::Case::invalidProgram),
        "model.mil, line 1, column 3: this byte begins no word");
    EXPECT_EQ(errorOf([] { words(std::string_view("\0", 1)); }, MLModelError::Case::invalidProgram),
        "model.mil, line 1, column 1: this byte begins no word");
}

TEST(Lexer, RefusesAStringWithoutEnd)
{
    for (const char* const text : { "\"abc", "\"abc\\", "\"abc\\\"" })
        EXPECT_EQ(errorOf([&] { words(text); }, MLModelError::Case::invalidProgram),
            "model.mil, line 1, column 1: this string does not end");
}

TEST(Lexer, GivesTheEndAgainAndAgain)
{
    Lexer lexer(" ");
    EXPECT_EQ(lexer.next().kind, Token::Kind::end);
    EXPECT_EQ(lexer.next().kind, Token::Kind::end);
}

} // namespace
} // namespace MLProgram
