// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Stage.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace Scenarios {
namespace {

std::vector<std::filesystem::path> stories()
{
    std::vector<std::filesystem::path> paths;
    for (const auto& file : std::filesystem::directory_iterator(STORIES_DIRECTORY))
        paths.push_back(file.path());
    std::ranges::sort(paths);
    return paths;
}

std::string nameOf(const ::testing::TestParamInfo<std::filesystem::path>& info)
{
    std::string name = info.param.stem().string();
    std::ranges::replace(name, '-', '_');
    return name;
}

class Scenario : public ::testing::TestWithParam<std::filesystem::path> { };

TEST_P(Scenario, Plays)
{
    const auto steps = readStory(GetParam());
    const bool isUnprepared
        = std::ranges::any_of(steps, [](const Step& step) { return step.words == "GIVEN models not-prepared"; });
    Stage stage(isUnprepared ? Stage::Models::notPrepared : Stage::Models::ready);
    for (const auto& step : steps)
        stage.play(step);
}

INSTANTIATE_TEST_SUITE_P(, Scenario, ::testing::ValuesIn(stories()), nameOf);

} // namespace
} // namespace Scenarios
