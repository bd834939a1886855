// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "PublishedModels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace fs = std::filesystem;

using testing::MatchesRegex;

namespace {

constexpr auto success = "PASS: speech prepared before cleanup; cached weights/runtime ready without a download.\n";

class PreparationCache : public testing::Test {
protected:
    void prepare() const
    {
        const auto outcome = models.run({ PREPARE_MODELS_PROGRAM });
        ASSERT_EQ(outcome.status, 0) << outcome.output << outcome.errors;
        models.hub.clear();
    }

    Outcome check() const { return models.run({ TEST_PINS_PROGRAM, "--check-preparation-cache" }); }

    void expectFailure(const std::string& errors) const
    {
        const auto outcome = check();
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.output, "");
        EXPECT_THAT(outcome.errors, MatchesRegex(errors));
        EXPECT_TRUE(models.hub.log().empty());
    }

    PublishedModels models;
};

} // namespace

TEST_F(PreparationCache, SufficesOnceTheModelsAreReady)
{
    prepare();
    const auto outcome = check();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, success);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_TRUE(models.hub.log().empty());
    EXPECT_TRUE(fs::is_empty(models.temporary()));
}

TEST_F(PreparationCache, SufficesWhereThereIsNoNetworkAtAll)
{
    if (runProgram({ "unshare", "-rn", "true" }).status != 0)
        GTEST_SKIP() << "this system gives no network namespaces to its users";
    prepare();
    const auto outcome = models.run({ "unshare", "-rn", TEST_PINS_PROGRAM, "--check-preparation-cache" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, success);
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(PreparationCache, SufficesForARepair)
{
    prepare();
    std::ofstream(models.cleanup() / ".runtime-needs-repair").close();
    EXPECT_EQ(check().output, success);
    EXPECT_FALSE(fs::exists(models.cleanup() / ".runtime-needs-repair"));
}

TEST_F(PreparationCache, SufficesWithASpeechModelThatTheUserPlaced)
{
    prepare();
    fs::remove_all(models.speech());
    auto environment = models.environment();
    environment["OSTREL_MODEL_DIRECTORY"] = SMALL_MODEL_DIRECTORY;
    EXPECT_EQ(runProgram({ TEST_PINS_PROGRAM, "--check-preparation-cache" }, environment).output, success);
}

TEST_F(PreparationCache, DoesNotSufficeWithoutASpeechModel)
{
    expectFailure("Cached preparation failed: the cleanup model is not installed\n");
}

TEST_F(PreparationCache, DoesNotSufficeWithADamagedSpeechModel)
{
    prepare();
    std::ofstream(models.speech() / "embedding.f16", std::ios::app) << "!";
    expectFailure("Cached preparation failed: the cleanup model is not installed\n");
}

TEST_F(PreparationCache, DoesNotSufficeWithDamagedWeights)
{
    prepare();
    std::ofstream(models.cleanup() / "model.gguf", std::ios::app) << "!";
    expectFailure("Cached preparation failed: [^\n]+\n");
}

TEST_F(PreparationCache, DoesNotSufficeWithoutTheRuntimeAndItsArchive)
{
    prepare();
    fs::remove_all(models.cleanup() / "runtime");
    fs::remove_all(models.cleanup() / "downloads");
    expectFailure("Cached preparation failed: [^\n]+\n");
}

TEST_F(PreparationCache, IsCheckedWithThePinsOfTheProduct)
{
    prepare();
    const auto outcome = models.run({ SORVANE_PROGRAM, "--check-preparation-cache" });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, MatchesRegex("Cached preparation failed: [^\n]+\n"));
}
