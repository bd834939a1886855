// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelCatalog/ModelDeclaration.h>

#include <gtest/gtest.h>

using namespace ModelCatalog;
using ModelStore::ModelPlatform;

namespace {

class Example final : public ModelDeclaration {
public:
    std::string id() const override { return "example"; }
    std::string product() const override { return "Example"; }
    std::string revision() const override { return "v2"; }
    std::string sdkVersion() const override { return "1.0"; }
    std::string summary() const override { return "An example."; }
    std::map<ModelPlatform, std::vector<std::string>> files() const override
    {
        return { { ModelPlatform::apple, { "a/" } }, { ModelPlatform::web, { "b" } } };
    }
    std::string artifact(ModelPlatform platform) const override { return platform == ModelPlatform::web ? "b" : "a"; }
};

} // namespace

TEST(ModelDeclaration, DerivesItsDistribution)
{
    const Example example;
    EXPECT_EQ(example.repo(), "tarnwick/example");
    EXPECT_EQ(example.distribution(),
        (ModelStore::ModelDistribution { .repo = "tarnwick/example", .revision = "v2", .files = example.files() }));
    EXPECT_EQ(example.currentArtifact(), "a");
    EXPECT_EQ(example.osFloor(), OSFloor::packageFloor());
    EXPECT_FALSE(example.isAvailable({ .directory = "/absent", .cacheRoot = "/absent" }));
}

TEST(ModelDeclaration, SupportsThePlatformsThatItHasFilesFor)
{
    const Example example;
    EXPECT_TRUE(example.supports(ModelPlatform::web));
    EXPECT_FALSE(example.supports(ModelPlatform::linux));
    EXPECT_EQ(example.supports(), OSFloor::packageFloor().isSatisfiedHere());
}

TEST(OSFloor, SaysWhatIsMissingOnlyWhenItIs)
{
    EXPECT_EQ(OSFloor::packageFloor(), (OSFloor { 16, 13, 16, 1, 9 }));
    EXPECT_EQ(OSFloor::multifunction(), (OSFloor { 18, 15, 18, 2, 11 }));
    EXPECT_EQ(OSFloor::mlx(), (OSFloor { 17, 14, 17, 1, 11 }));
    const std::optional<std::string> reason = OSFloor::mlx().unmetReason("Example");
    if (OSFloor::mlx().isSatisfiedHere())
        EXPECT_FALSE(reason.has_value());
    else
        EXPECT_EQ(reason, "Example needs iOS 17 / macOS 14 / tvOS 17 / visionOS 1 / watchOS 11; this system is older");
}
