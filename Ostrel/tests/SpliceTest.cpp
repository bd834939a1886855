// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Splice.h"

#include "Fold.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace Ostrel;

namespace {

// Words of half a second each, one every second from `start` on.
std::vector<Word> spoken(std::initializer_list<const char*> texts, double start)
{
    std::vector<Word> words;
    for (const char* text : texts) {
        words.push_back({ text, start, start + 0.5 });
        start += 1;
    }
    return words;
}

std::string textOf(const std::vector<Word>& words)
{
    std::string text;
    for (const Word& word : words)
        text += word.text + " ";
    return text;
}

std::vector<Word> slice(const std::vector<Word>& words, size_t from, size_t to)
{
    return { words.begin() + static_cast<ptrdiff_t>(from), words.begin() + static_cast<ptrdiff_t>(to) };
}

// The merge, said once more as plainly as possible: every pair of places and every length is tried.
std::vector<Word> plainSplice(
    const std::vector<Word>& left, const std::vector<Word>& right, double boundary, double overlap)
{
    if (left.empty())
        return right;
    if (right.empty())
        return left;

    std::vector<size_t> a;
    std::vector<size_t> b;
    for (size_t i = 0; i < left.size(); ++i)
        if (left[i].start >= boundary - overlap)
            a.push_back(i);
    for (size_t j = 0; j < right.size(); ++j)
        if (right[j].start < boundary + overlap)
            b.push_back(j);

    size_t bestLength = 1;
    size_t bestI = 0;
    size_t bestJ = 0;
    double bestDistance = 0;
    for (size_t i = 0; i < a.size(); ++i)
        for (size_t j = 0; j < b.size(); ++j)
            for (size_t length = 2; i + length <= a.size() && j + length <= b.size(); ++length) {
                bool common = true;
                for (size_t q = 0; q < length; ++q)
                    common = common && std::abs(left[a[i + q]].start - right[b[j + q]].start) <= 1.0
                        && fold(left[a[i + q]].text) == fold(right[b[j + q]].text);
                const double distance = std::abs(left[a[i]].start - right[b[j]].start);
                if (common && (length > bestLength || (length == bestLength && distance < bestDistance))) {
                    bestLength = length;
                    bestI = i;
                    bestJ = j;
                    bestDistance = distance;
                }
            }
    if (bestLength > 1) {
        std::vector<Word> upToSeam = slice(left, 0, a[bestI]);
        for (size_t q = 0; q < bestLength; ++q)
            upToSeam.push_back(left[a[bestI + q]]);
        return repairJoin(upToSeam, slice(right, b[bestJ] + bestLength, right.size()));
    }

    std::vector<Word> before;
    std::vector<Word> after;
    for (const Word& word : left)
        if (word.start < boundary)
            before.push_back(word);
    for (const Word& word : right)
        if (word.start >= boundary)
            after.push_back(word);
    if (!a.empty() && !b.empty())
        return repairJoin(before, after);
    before.insert(before.end(), after.begin(), after.end());
    return before;
}

} // namespace

TEST(SpliceOverlap, JoinsAtTheLongestCommonRun)
{
    const auto joined = spliceOverlap(
        spoken({ "one", "Two,", "three", "fore" }, 0), spoken({ "two", "three", "four", "five" }, 1.1), 2, 3);
    EXPECT_EQ(textOf(joined), "one Two, three four five ");
    EXPECT_EQ(joined[1].start, 1); // the left window's copy
    EXPECT_EQ(joined[3].start, 3.1);
}

TEST(SpliceOverlap, TakesNoRunOfOneWord)
{
    // The boundary decides: "three" of left starts before 2.5, of right before it too.
    const auto merged
        = spliceOverlap(spoken({ "one", "two", "three", "x" }, 0), spoken({ "y", "three", "four" }, 1), 2.5, 3);
    EXPECT_EQ(textOf(merged), "one two three four ");
}

TEST(SpliceOverlap, MatchesStartsUpToASecondApart)
{
    const auto merged = [](double shift) {
        return textOf(spliceOverlap(spoken({ "a", "b", "c", "d" }, 0), spoken({ "b", "c", "e" }, 1 + shift), 2, 3));
    };
    EXPECT_EQ(merged(1.0), "a b c e ");
    EXPECT_EQ(merged(1.01), "a b b c e "); // by the boundary; "b" does not overlap "b" in time
}

TEST(SpliceOverlap, PrefersTheLongerThenTheCloserThenTheFirstRun)
{
    const std::vector<Word> left { { "a", 10, 10.1 }, { "b", 10.2, 10.3 }, { "a", 10.6, 10.7 }, { "b", 10.8, 10.9 } };
    EXPECT_EQ(
        spliceOverlap(left, { { "a", 10.65, 10.7 }, { "b", 10.85, 10.9 }, { "end", 12, 13 } }, 10.5, 3).size(), 5U);
    EXPECT_EQ(
        spliceOverlap(left, { { "a", 10.05, 10.1 }, { "b", 10.25, 10.3 }, { "end", 12, 13 } }, 10.5, 3).size(), 3U);
    const std::vector<Word> twins { { "a", 10, 10.1 }, { "b", 10, 10.1 }, { "a", 10, 10.1 }, { "b", 10, 10.1 } };
    EXPECT_EQ(spliceOverlap(twins, { { "a", 10, 10.1 }, { "b", 10, 10.1 }, { "end", 12, 13 } }, 10.5, 3).size(), 3U);
    const std::vector<Word> three { { "a", 10, 10.1 }, { "b", 10.2, 10.3 }, { "c", 10.6, 10.7 } };
    EXPECT_EQ(textOf(spliceOverlap(three,
                  { { "b", 10.2, 10.3 }, { "c", 10.3, 10.4 }, { "a", 10.9, 11 }, { "b", 11, 11.1 }, { "c", 11.5, 11.6 },
                      { "end", 12, 13 } },
                  10.5, 3)),
        "a b c end ");
}

TEST(SpliceOverlap, DropsTheLeftWordsAfterTheRun)
{
    EXPECT_EQ(textOf(spliceOverlap(spoken({ "a", "b", "lost", "too" }, 0), spoken({ "a", "b", "new" }, 0), 1, 3)),
        "a b new ");
}

TEST(SpliceOverlap, ConcatenatesWithAnEmptyList)
{
    EXPECT_EQ(textOf(spliceOverlap({}, spoken({ "a" }, 9), 5, 3)), "a ");
    EXPECT_EQ(textOf(spliceOverlap(spoken({ "a" }, 9), {}, 5, 3)), "a ");
    EXPECT_TRUE(spliceOverlap({}, {}, 5, 3).empty());
}

TEST(SpliceOverlap, CutsAtTheBoundaryWithoutMendingWhenNothingOverlaps)
{
    // Left ends 5 s before the boundary: its full stop is its own.
    EXPECT_EQ(textOf(spliceOverlap(spoken({ "it." }, 0), spoken({ "was", "late" }, 5), 5, 3)), "it. was late ");
    EXPECT_EQ(textOf(spliceOverlap(spoken({ "it." }, 3), spoken({ "was", "late" }, 5), 5, 3)), "it was late ");
}

TEST(SpliceOverlap, AgreesWithThePlainMergeOnRandomLists)
{
    std::mt19937 random(11);
    const char* texts[] = { "a", "A.", "b", "b,", "c" };
    std::uniform_int_distribution<size_t> text(0, 4);
    std::uniform_int_distribution<size_t> length(0, 9);
    std::uniform_int_distribution<int> step(-1, 6);
    const auto list = [&](double start) {
        std::vector<Word> words(length(random));
        for (Word& word : words) {
            word = { texts[text(random)], start, start + 0.5 };
            start += 0.25 * step(random);
        }
        return words;
    };
    for (int round = 0; round < 3000; ++round) {
        const auto left = list(6);
        const auto right = list(7);
        EXPECT_EQ(spliceOverlap(left, right, 8, 2), plainSplice(left, right, 8, 2));
    }
}

TEST(RepairJoin, DropsAWordHeardTwice)
{
    EXPECT_EQ(textOf(repairJoin({ { "Hello", 0, 1 } }, { { "hello", 50, 51 }, { "there", 52, 53 } })), "Hello there ");
    EXPECT_EQ(textOf(repairJoin({ { "hello", 0, 1 } }, { { "hello", 0.5, 2 } })), "hello ");
    EXPECT_EQ(textOf(repairJoin({ { "hello", 0, 1 } }, { { "hello", 1, 2 } })), "hello hello ");
}

TEST(RepairJoin, TakesAwayAFullStopThatTheCutMade)
{
    EXPECT_EQ(
        repairJoin({ { "it.", 0, 1 } }, { { "was", 1, 2 } }), (std::vector<Word> { { "it", 0, 1 }, { "was", 1, 2 } }));
    EXPECT_EQ(repairJoin({ { "it?", 3, 1 } }, { { "was", 4, 5 } }).front(), (Word { "it", 3, 3 }));
    EXPECT_EQ(textOf(repairJoin({ { "it!", 0, 1 } }, { { "was", 1, 2 } })), "it was ");
    EXPECT_EQ(textOf(repairJoin({ { "it.", 0, 1 } }, { { "Was", 1, 2 } })), "it. Was ");
    EXPECT_EQ(textOf(repairJoin({ { "it,", 0, 1 } }, { { "was", 1, 2 } })), "it, was ");
}

TEST(RepairJoin, LooksAtTheWordAfterADroppedOne)
{
    EXPECT_EQ(textOf(repairJoin({ { "it.", 0, 1 } }, { { "It", 1, 2 }, { "was", 2, 3 } })), "it was ");
    EXPECT_EQ(textOf(repairJoin({ { "it.", 0, 1 } }, { { "it", 1, 2 } })), "it. ");
}

TEST(RepairJoin, ConcatenatesWithAnEmptyList)
{
    EXPECT_EQ(textOf(repairJoin({}, { { "a", 0, 1 } })), "a ");
    EXPECT_EQ(textOf(repairJoin({ { "a.", 0, 1 } }, {})), "a. ");
}
