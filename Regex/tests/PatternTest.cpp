// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Regex/Pattern.h>
#include <Regex/RegexError.h>

#include <gtest/gtest.h>

#include <string>

namespace Regex {
namespace {

TEST(Pattern, FindsTheFirstMatchAndAllMatches)
{
    const Pattern digits("\\d+");
    const std::string text = "12 apples, 7 pears";
    EXPECT_EQ(digits.firstMatch(text)->substring(), "12");
    const auto all = digits.matches(text);
    ASSERT_EQ(all.size(), 2);
    EXPECT_EQ(all[1].substring(), "7");
    EXPECT_EQ(all[1].range(), (ByteRange { 11, 12 }));
    EXPECT_TRUE(digits.contains(text));
    EXPECT_FALSE(digits.contains("none"));
    EXPECT_EQ(digits.firstMatch("none"), std::nullopt);
}

TEST(Pattern, LeavesASkippedGroupAbsentAtItsPlace)
{
    const auto match = Pattern("(a)?(b)").firstMatch("b");
    ASSERT_EQ(match->captures.size(), 3);
    EXPECT_EQ(match->captures[1].range, std::nullopt);
    EXPECT_EQ(match->captures[1].substring, std::nullopt);
    EXPECT_EQ(match->captures[2].range, (ByteRange { 0, 1 }));
    EXPECT_EQ(match->captures[2].substring, "b");
}

TEST(Pattern, TellsAnEmptyGroupFromASkippedOne)
{
    const auto match = Pattern("(a*)b").firstMatch("b");
    EXPECT_EQ(match->captures[1].range, (ByteRange { 0, 0 }));
    EXPECT_EQ(match->captures[1].substring, "");
}

TEST(Pattern, ThatIsEmptyMatchesAtTheStartOfAnyText)
{
    const Pattern empty("");
    EXPECT_EQ(empty.firstMatch("")->range(), (ByteRange { 0, 0 }));
    EXPECT_EQ(empty.firstMatch("ab")->range(), (ByteRange { 0, 0 }));
    EXPECT_EQ(empty.matches("ab").size(), 3);
}

TEST(Pattern, MatchesTheWholeTextOrItsBeginning)
{
    const Pattern either("a|ab");
    EXPECT_EQ(either.wholeMatch("ab")->substring(), "ab");
    EXPECT_EQ(either.wholeMatch("abc"), std::nullopt);
    EXPECT_EQ(either.wholeMatch("cab"), std::nullopt);
    EXPECT_EQ(either.prefixMatch("abc")->substring(), "a");
    EXPECT_EQ(either.prefixMatch("cab"), std::nullopt);
}

TEST(Pattern, TakesATextWithALastLineBreakAsWhole)
{
    EXPECT_EQ(Pattern("a").wholeMatch("a\n")->substring(), "a");
    EXPECT_EQ(Pattern("a").wholeMatch("a\n\n"), std::nullopt);
    EXPECT_EQ(Pattern("a").wholeMatch("b\na"), std::nullopt); // "^" is the text's start, not a line's
}

TEST(Pattern, FindsNothingWhereItsAnchoredFormDoesNotCompile)
{
    const Pattern quotation("\\Qa"); // quotes the bracket that should close it
    EXPECT_TRUE(quotation.contains("a"));
    EXPECT_EQ(quotation.wholeMatch("a"), std::nullopt);
    EXPECT_EQ(quotation.prefixMatch("a"), std::nullopt);
}

TEST(Pattern, IgnoresCaseWhereAsked)
{
    const Pattern exact = rx("straße");
    EXPECT_FALSE(exact.caseInsensitive());
    EXPECT_FALSE(exact.contains("STRASSE"));
    const Pattern folding = rx("straße", Case::ignored);
    EXPECT_TRUE(folding.caseInsensitive());
    EXPECT_TRUE(folding.contains("STRASSE"));
    EXPECT_TRUE(folding.wholeMatch("Strasse"));
    EXPECT_TRUE(folding.prefixMatch("STRASSEN"));
    EXPECT_EQ(folding.pattern(), "straße");
}

// Folding case makes three letters of U+FB03, and of a pattern just long enough one too long for ICU.
TEST(Pattern, SaysWhetherCaseIsReallyIgnored)
{
    constexpr size_t letterCount = 5'600'000;
    std::string source;
    for (size_t i = 0; i < letterCount; ++i)
        source += "\uFB03";
    const Pattern pattern = regex(source, Case::ignored);
    EXPECT_FALSE(pattern.caseInsensitive());
    EXPECT_FALSE(pattern.contains("ffi"));
}

TEST(Pattern, RefusesWhatDoesNotCompile)
{
    EXPECT_THROW(Pattern("(a"), RegexError);
    EXPECT_THROW(regex("(a", Case::ignored), RegexError);
    try {
        regex("a\n[b");
        FAIL() << "compiled";
    } catch (const RegexError& error) {
        EXPECT_EQ(error.description(), "pattern does not compile: U_REGEX_MISSING_CLOSE_BRACKET at line 2, offset 2");
    }
}

TEST(PatternDeathTest, EndsTheProcessIfAWrittenPatternDoesNotCompile)
{
    EXPECT_DEATH(rx("(a"), "Regex/Regex: pattern does not compile: U_REGEX_MISMATCHED_PAREN");
}

TEST(Pattern, GivesUpInsteadOfSearchingForEver)
{
    const Pattern catastrophe("(a+)+b");
    const std::string text(10'000, 'a');
    EXPECT_FALSE(catastrophe.contains(text));
    const auto goOn = [](const Match&, MatchingFlags) { return Pattern::Next::goOn; };
    EXPECT_EQ(catastrophe.enumerateMatches(text, goOn), MatchingFlags::internalError);
    EXPECT_EQ(Pattern("(?:a|b)*c").enumerateMatches(std::string(1'000'000, 'a'), goOn), MatchingFlags::internalError);
    EXPECT_EQ(Pattern("b").enumerateMatches(text, goOn), MatchingFlags::completed);
}

TEST(Pattern, ShowsMatchesUntilTheVisitorHasEnough)
{
    int seen = 0;
    const auto flags = Pattern("a").enumerateMatches(
        "aaa", [&](const Match&, MatchingFlags) { return ++seen == 2 ? Pattern::Next::stop : Pattern::Next::goOn; });
    EXPECT_EQ(seen, 2);
    EXPECT_EQ(flags, MatchingFlags {});
}

TEST(Pattern, TellsWhatMoreTextCouldChange)
{
    const auto flagsOf = [](const char* source, std::string_view text) {
        MatchingFlags seen;
        Pattern(source).enumerateMatches(text, [&](const Match&, MatchingFlags flags) {
            seen = flags;
            return Pattern::Next::stop;
        });
        return seen;
    };
    EXPECT_EQ(flagsOf("a", "ab"), MatchingFlags {});
    EXPECT_EQ(flagsOf("a+", "aa"), MatchingFlags::hitEnd);
    EXPECT_TRUE(flagsOf("a$", "a").contains(MatchingFlags::hitEnd | MatchingFlags::requiredEnd));
}

} // namespace
} // namespace Regex
