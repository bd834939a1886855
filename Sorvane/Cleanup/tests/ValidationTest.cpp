// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/TranscriptCleanup.h>

#include <gtest/gtest.h>

namespace Sorvane {

namespace {

std::optional<std::string> validated(const std::string& output)
{
    return TranscriptCleanup::validate(output, "hello");
}

} // namespace

TEST(Validation, TakesWhatStandsBeforeAStopMarker)
{
    EXPECT_EQ(validated("Hello, world.<|im_end|> [end of text]\n\n\n"), "Hello, world.");
    EXPECT_EQ(validated("Hello.<|endoftext|> [end of text]\n\n\n"), "Hello.");
    EXPECT_EQ(validated("Hello.<|im_end|>"), "Hello.");
    EXPECT_EQ(validated("First\n\nSecond<|im_end|>\n"), "First\n\nSecond");
}

TEST(Validation, TrimsBlanksOfEveryKind)
{
    EXPECT_EQ(validated("\u00A0\n\t\u3000Hello.\u2028\r\n <|im_end|>\u2003[end of text]\u0085"), "Hello.");
}

TEST(Validation, RefusesATextWithoutAStopMarker)
{
    EXPECT_EQ(validated(""), std::nullopt);
    EXPECT_EQ(validated("Hello, wor\n\n"), std::nullopt);
    EXPECT_EQ(validated("Hello. [end of text]\n\n\n"), std::nullopt);
    EXPECT_EQ(validated("Hello.<|im_end"), std::nullopt);
}

TEST(Validation, RefusesWhatGoesOnBehindTheMarker)
{
    EXPECT_EQ(validated("Hello.<|im_end|> And more."), std::nullopt);
    EXPECT_EQ(validated("Hello.<|im_end|> [end of text] more"), std::nullopt);
    EXPECT_EQ(validated("Hello.<|im_end|> [End of text]"), std::nullopt);
    EXPECT_EQ(validated("Hello.<|im_end|><|endoftext|>"), std::nullopt);
}

TEST(Validation, GoesByTheFirstMarker)
{
    EXPECT_EQ(validated("Hello.<|endoftext|> there <|im_end|>"), std::nullopt);
    EXPECT_EQ(validated("Hello.<|im_end|> there <|endoftext|>"), std::nullopt);
}

TEST(Validation, RefusesAnEmptyText)
{
    EXPECT_EQ(validated("<|im_end|>"), std::nullopt);
    EXPECT_EQ(validated(" \n\u00A0<|im_end|> [end of text]"), std::nullopt);
}

TEST(Validation, RefusesControlTokens)
{
    EXPECT_EQ(validated("<think>\n\n</think>\n\nHello.<|im_end|>"), std::nullopt);
    EXPECT_EQ(validated("Hello.</think><|im_end|>"), std::nullopt);
    EXPECT_EQ(validated("Hello <| there<|im_end|>"), std::nullopt);
    EXPECT_EQ(validated("I <thought> so.<|im_end|>"), "I <thought> so.");
}

TEST(Validation, LimitsTheLengthToTwiceTheOriginals)
{
    const auto accepts = [](size_t bytes, size_t ofOriginal) {
        const std::string output = std::string(bytes, 'x') + "<|im_end|>";
        return TranscriptCleanup::validate(output, std::string(ofOriginal, 'y')).has_value();
    };
    EXPECT_TRUE(accepts(256, 1));
    EXPECT_FALSE(accepts(257, 1));
    EXPECT_FALSE(accepts(257, 128));
    EXPECT_TRUE(accepts(258, 129));
    EXPECT_FALSE(accepts(259, 129));
}

TEST(Validation, CountsNoBlanksAroundTheText)
{
    const std::string blanks(1'000, ' ');
    EXPECT_EQ(validated(blanks + std::string(256, 'x') + blanks + "<|im_end|>" + blanks), std::string(256, 'x'));
}

TEST(Validation, TakesAnyBytesAndAnyLength)
{
    EXPECT_EQ(validated("\xFF\xC0<|im_end|>"), "\xFF\xC0");
    EXPECT_EQ(validated(std::string("a\0b<|im_end|>", 13)), std::string("a\0b", 3));
    EXPECT_EQ(validated(std::string(5'000'000, 'x') + "<|im_end|>"), std::nullopt);
    EXPECT_EQ(validated("a<|im_end|>" + std::string(5'000'000, '\n') + "[end of text]"), "a");
}

TEST(Validation, CountsBytesAndNotCharacters)
{
    std::string accents;
    for (int i = 0; i < 128; ++i)
        accents += "é";
    EXPECT_EQ(validated(accents + "<|im_end|>"), accents);
    EXPECT_EQ(validated(accents + "é<|im_end|>"), std::nullopt);
}

} // namespace Sorvane
