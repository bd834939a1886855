// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/Operation.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace MLProgram;

TEST(Catalogue, FindsEachOperationByItsName)
{
    for (const OperationDefinition& definition : allOperations())
        EXPECT_EQ(findOperation(definition.name), &definition) << definition.name;
}

TEST(Catalogue, IsSortedAndHoldsEachNameOnce)
{
    const auto notAscending = [](const auto& a, const auto& b) { return a.name >= b.name; };
    EXPECT_EQ(std::ranges::adjacent_find(allOperations(), notAscending), allOperations().end());
}

TEST(Catalogue, KnowsNoOtherNames)
{
    EXPECT_EQ(findOperation(""), nullptr);
    EXPECT_EQ(findOperation("ad"), nullptr);
    EXPECT_EQ(findOperation("adds"), nullptr);
    EXPECT_EQ(findOperation("zzz"), nullptr);
}
