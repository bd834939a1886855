// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/RevisionRequirement.h>
#include <ModelStore/SemanticVersion.h>

#include <gtest/gtest.h>

using namespace ModelStore;

namespace {

std::optional<std::string> from(const std::string& minimum, const std::vector<std::string>& candidates)
{
    return RevisionRequirement::from(minimum).bestMatch(candidates);
}

} // namespace

TEST(SemanticVersion, ReadsOneToThreeNumbers)
{
    EXPECT_EQ(SemanticVersion::parse("v2"), (SemanticVersion { 2, 0, 0 }));
    EXPECT_EQ(SemanticVersion::parse("1.4"), (SemanticVersion { 1, 4, 0 }));
    EXPECT_EQ(SemanticVersion::parse("v1.2.3"), (SemanticVersion { 1, 2, 3 }));
    EXPECT_EQ(SemanticVersion::parse("007.0.9223372036854775807"), (SemanticVersion { 7, 0, INT64_MAX }));
}

TEST(SemanticVersion, IsNothingElse)
{
    for (const char* tag : { "", "v", "V1.2.3", "vv1", "1.2.3.4", "1..2", "1.2-beta", "1.", ".1", "+1", "-1", " 1",
             "1 ", "main", "9223372036854775808", "\u0661.2", "\uFF11" })
        EXPECT_EQ(SemanticVersion::parse(tag), std::nullopt) << tag;
}

TEST(SemanticVersion, IsOrderedFromLeftToRight)
{
    EXPECT_LT((SemanticVersion { 1, 9, 9 }), (SemanticVersion { 2, 0, 0 }));
    EXPECT_LT((SemanticVersion { 1, 1, 9 }), (SemanticVersion { 1, 2, 0 }));
    EXPECT_LT((SemanticVersion { 1, 2, 2 }), (SemanticVersion { 1, 2, 3 }));
}

TEST(RevisionRequirement, PicksTheGreatestOfTheSameMajorNumber)
{
    EXPECT_EQ(from("1.2.0", { "1.1.9", "v1.2.0", "1.3", "2.0.0", "main" }), "1.3");
    EXPECT_EQ(from("v1.2", { "1.10", "1.9" }), "1.10");
    EXPECT_EQ(from("1.2.0", { "2.0.0", "1.1.0" }), std::nullopt);
}

TEST(RevisionRequirement, PicksTheFirstOfEqualOnesAsItIsWritten)
{
    EXPECT_EQ(from("1.2.0", { "1.3", "v1.3.0" }), "1.3");
    EXPECT_EQ(from("1.2.0", { "v1.2.0", "1.2" }), "v1.2.0");
}

TEST(RevisionRequirement, PicksNothingFromWhatIsNoVersion)
{
    EXPECT_EQ(from("abc", { "abc", "1.0" }), std::nullopt);
    EXPECT_EQ(from("1", {}), std::nullopt);
}

TEST(RevisionRequirement, TakesAnExactOneAndNothingElse)
{
    const auto exact = RevisionRequirement::exact("main");
    EXPECT_EQ(exact.bestMatch({ "v1", "main" }), "main");
    EXPECT_EQ(exact.bestMatch({ "Main" }), std::nullopt);
    EXPECT_EQ(exact.exactRevision(), "main");
    EXPECT_EQ(RevisionRequirement::from("1").exactRevision(), std::nullopt);
    EXPECT_NE(exact, RevisionRequirement::from("main"));
}
