// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ClampMonotonic.h"

#include <gtest/gtest.h>

#include <random>

using namespace Ostrel;

namespace {

std::vector<Word> clamped(std::vector<Word> words)
{
    clampMonotonic(words);
    return words;
}

} // namespace

TEST(ClampMonotonic, MovesStartsThatGoBack)
{
    EXPECT_EQ(clamped({ { "a", 2, 3 }, { "b", 1, 1.5 }, { "c", 1, 4 } }),
        (std::vector<Word> { { "a", 2, 2 }, { "b", 2, 2 }, { "c", 2, 4 } }));
}

TEST(ClampMonotonic, CutsEndsAtTheNextStart)
{
    EXPECT_EQ(clamped({ { "a", 0, 5 }, { "b", 1, 2 } }), (std::vector<Word> { { "a", 0, 1 }, { "b", 1, 2 } }));
}

TEST(ClampMonotonic, KeepsASingleWordsEnd)
{
    EXPECT_EQ(clamped({ { "a", 3, 1 } }), (std::vector<Word> { { "a", 3, 1 } }));
    EXPECT_TRUE(clamped({}).empty());
}

TEST(ClampMonotonic, KeepsAnEndBeforeAStartThatWasNotMoved)
{
    EXPECT_EQ(clamped({ { "a", 3, 1 }, { "b", 4, 5 } }).front(), (Word { "a", 3, 1 }));
}

TEST(ClampMonotonic, OrdersAnyList)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> time(-5, 5);
    for (int round = 0; round < 500; ++round) {
        std::vector<Word> words(static_cast<size_t>(round % 12));
        for (Word& word : words)
            word = { "w", time(random), time(random) };
        const std::vector<Word> ordered = clamped(words);
        ASSERT_EQ(ordered.size(), words.size());
        for (size_t i = 0; i + 1 < ordered.size(); ++i) {
            EXPECT_LE(ordered[i].start, ordered[i + 1].start);
            EXPECT_LE(ordered[i].end, ordered[i + 1].start);
        }
        EXPECT_EQ(clamped(ordered), ordered);
    }
}
