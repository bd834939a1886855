// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Weights/BundleWeights.h"

#include "Model/TestBundles.h"
#include "Text/TextTesting.h"
#include "Weights/WeightFileBuilder.h"

#include <gmock/gmock.h>

#include <optional>

namespace MLProgram {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(BundleWeights, ReadsFromTheFileThatThePathNames)
{
    WeightFileBuilder one;
    WeightFileBuilder two;
    one.append(3, { 1 });
    two.append(3, { 2 });
    const TemporaryBundle bundle({ { "weights/weight.bin", one.text() }, { "other.bin", two.text() } });
    BundleWeights weights(bundle.path());
    EXPECT_THAT(reals(weights.read("@model_path/weights/weight.bin", 64, ScalarType::uint8, {})), ElementsAre(1));
    EXPECT_THAT(reals(weights.read("@model_path/other.bin", 64, ScalarType::uint8, {})), ElementsAre(2));
    EXPECT_THAT(reals(weights.read("@model_path/other.bin", 64, ScalarType::uint8, {})), ElementsAre(2));
}

TEST(BundleWeights, KeepsTheBytesForAsLongAsAConstantLives)
{
    WeightFileBuilder file;
    file.append(3, { 5, 6 });
    std::optional<Constant> constant;
    {
        const TemporaryBundle bundle({ { "w.bin", file.text() } });
        constant = BundleWeights(bundle.path()).read("@model_path/w.bin", 64, ScalarType::uint8, { 2 });
    }
    EXPECT_THAT(reals(*constant), ElementsAre(5, 6));
}

TEST(BundleWeights, RefusesPathsThatLeadOutOfTheBundle)
{
    const TemporaryBundle bundle;
    BundleWeights weights(bundle.path());
    for (const std::string path :
        { "/etc/passwd", "weights/weight.bin", "@model_path", "@model_path/", "@model_path//etc/passwd",
            "@model_path/../x", "@model_path/a/../../x", "@model_path/..", "", "@model_pathx/w.bin" })
        EXPECT_THAT(errorOf([&] { weights.read(path, 64, ScalarType::uint8, {}); }, MLModelError::Case::invalidProgram),
            HasSubstr("does not lead to a file of the bundle"))
            << path;
    EXPECT_THAT(errorOf([&] { weights.read(std::string("@model_path/w\0", 14), 64, ScalarType::uint8, {}); },
                    MLModelError::Case::invalidProgram),
        HasSubstr("the path \"@model_path/w"));
}

TEST(BundleWeights, NamesAFileThatIsMissing)
{
    const TemporaryBundle bundle({ { "folder/x", std::string() } });
    BundleWeights weights(bundle.path());
    EXPECT_EQ(errorOf([&] { weights.read("@model_path/weights/weight.bin", 64, ScalarType::uint8, {}); },
                  MLModelError::Case::io),
        "weights/weight.bin cannot be read: No such file or directory");
    EXPECT_THAT(errorOf([&] { weights.read("@model_path/folder", 64, ScalarType::uint8, {}); }, MLModelError::Case::io),
        HasSubstr("folder cannot be read"));
}

} // namespace
} // namespace MLProgram
