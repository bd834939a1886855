// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InstallerTestbed.h"

#include <PlatformSupport/SystemClock.h>
#include <Sorvane/CleanupFailure.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Sorvane {
namespace {

namespace fs = std::filesystem;
using testing::DoubleEq;
using testing::ElementsAre;

constexpr auto archiveName = "downloads/llama-b10809-bin-ubuntu-x64.tar.gz";

struct Installer : testing::Test, TestClock<PlatformSupport::SystemClock>, InstallerTestbed {
    Installer()
        : InstallerTestbed(clock)
    {
    }

    // As after a first preparation; what it left to be seen is forgotten.
    void install()
    {
        prepare();
        server.requests.clear();
        fractions.clear();
        for (const auto& tool : { files.generator(), files.tokeniser() })
            fs::remove(tool.string() + ".record");
    }

    // The tools leave a record beside themselves when they run.
    bool toolsHaveRun() const
    {
        return exists("runtime/llama-completion.record") && exists("runtime/llama-tokenize.record");
    }
};

TEST_F(Installer, FillsAnEmptyDirectory)
{
    prepare();
    expectInstalled();
    EXPECT_TRUE(toolsHaveRun());
    EXPECT_EQ(server.requests, (std::vector { assets.weights.url, assets.runtime.url }));
    EXPECT_THAT(folder.names(), testing::Contains("temporary"));
    EXPECT_TRUE(fs::is_empty(folder / "temporary"));
}

TEST_F(Installer, ReportsTwoBandsAndThenTheEnd)
{
    prepare();
    EXPECT_THAT(fractions,
        ElementsAre(
            DoubleEq(0.45), DoubleEq(0.882), DoubleEq(0.882), DoubleEq(0.94), DoubleEq(0.9784), DoubleEq(0.9784), 1.0));
}

TEST_F(Installer, NeedsNoNetworkForACompleteDirectory)
{
    install();
    cutOff();
    prepare();
    expectInstalled();
    EXPECT_TRUE(server.requests.empty());
    EXPECT_FALSE(toolsHaveRun());
    EXPECT_THAT(fractions, ElementsAre(DoubleEq(0.882), 1.0));
}

TEST_F(Installer, FetchesTheRuntimeWhereOnlyTheWeightsAre)
{
    write("model.gguf", "the weights");
    prepare();
    expectInstalled();
    EXPECT_EQ(server.requests, std::vector { assets.runtime.url });
}

TEST_F(Installer, FetchesDamagedWeightsAndLeavesTheRuntime)
{
    install();
    write("model.gguf", "the_weights");
    write("runtime/untouched", "");
    prepare();
    expectInstalled();
    EXPECT_TRUE(exists("runtime/untouched"));
    EXPECT_EQ(server.requests, std::vector { assets.weights.url });
    EXPECT_FALSE(toolsHaveRun());
}

TEST_F(Installer, ProvesToolsThatNobodyHasProved)
{
    install();
    fs::remove(files.directory / ".runtime-b10809-ready");
    cutOff();
    prepare();
    expectInstalled();
    EXPECT_TRUE(toolsHaveRun());
}

TEST_F(Installer, RepairsWithoutANetwork)
{
    install();
    write(".runtime-needs-repair", "");
    write("runtime/stranger", "");
    cutOff();
    prepare();
    expectInstalled();
    EXPECT_TRUE(toolsHaveRun());
    EXPECT_FALSE(exists("runtime/stranger"));
    EXPECT_THAT(fractions, ElementsAre(DoubleEq(0.882), DoubleEq(0.9784), 1.0));
}

TEST_F(Installer, FetchesADamagedArchiveForARepair)
{
    install();
    write(".runtime-needs-repair", "");
    write(archiveName, "damaged");
    prepare();
    expectInstalled();
    EXPECT_EQ(server.requests, std::vector { assets.runtime.url });
}

TEST_F(Installer, DoesNotTrustAReadyMarkerWithoutTheTools)
{
    install();
    fs::remove_all(files.runtime());
    prepare();
    expectInstalled();
    EXPECT_TRUE(toolsHaveRun());
}

TEST_F(Installer, InstallsAgainWhatCannotBeExecuted)
{
    install();
    fs::permissions(files.tokeniser(), fs::perms::owner_read);
    cutOff();
    prepare();
    expectInstalled();
    EXPECT_TRUE(toolsHaveRun());
}

TEST_F(Installer, RemovesTheOldReadyMarkerWithTheRuntimeThatItSpeaksOf)
{
    install();
    fs::remove_all(files.runtime());
    write("../archive/llama-b10809/llama-completion.case", "exit 1\n");
    publishRuntime();
    EXPECT_THROW(prepare(), CleanupFailure);
    EXPECT_FALSE(exists(".runtime-b10809-ready"));
}

TEST_F(Installer, MarksAToolThatDoesNotRunForRepair)
{
    install();
    fs::remove(files.directory / ".runtime-b10809-ready");
    write("runtime/llama-tokenize.case", "exit 127\n");
    cutOff();
    EXPECT_THROW(prepare(), CleanupFailure);
    EXPECT_TRUE(exists(".runtime-needs-repair"));
    EXPECT_EQ(contents(".runtime-needs-repair"), "");
    EXPECT_FALSE(exists(".runtime-b10809-ready"));
    EXPECT_THAT(fractions, testing::Each(testing::Lt(0.979)));

    prepare(); // the user retries
    expectInstalled();
    EXPECT_FALSE(exists("runtime/llama-tokenize.case"));
}

TEST_F(Installer, ProvesTheGeneratorFirst)
{
    write("../archive/llama-b10809/llama-completion.case", "die\n");
    publishRuntime();
    EXPECT_THROW(prepare(), CleanupFailure);
    EXPECT_TRUE(exists("runtime/llama-completion.record"));
    EXPECT_FALSE(exists("runtime/llama-tokenize.record"));
}

TEST_F(Installer, RefusesAnotherFileThanTheWeights)
{
    server.files[assets.weights.url] = "the_weights";
    EXPECT_EQ(failure(), InstallationError::Case::checksum);
    EXPECT_TRUE(names().empty());
}

TEST_F(Installer, KeepsTheWeightsWhenTheArchiveIsNotToBeHad)
{
    server.files.erase(assets.runtime.url);
    EXPECT_THROW(prepare(), PlatformSupport::URLError);
    EXPECT_THAT(names(), ElementsAre("model.gguf"));
}

TEST_F(Installer, ClearsAwayWhatAKilledProcessLeft)
{
    install();
    write(".runtime-E621E1F8-C36C-495A-93FC-0C247A3E6E5F/llama-b10809/llama-completion", "half");
    cutOff();
    prepare();
    expectInstalled();
}

TEST_F(Installer, LeavesWhatIsNotItsOwn)
{
    install();
    write(".runtime-notes", "mine");
    write("notes/letter", "mine");
    prepare();
    EXPECT_TRUE(exists(".runtime-notes"));
    EXPECT_TRUE(exists("notes/letter"));
}

} // namespace
} // namespace Sorvane
