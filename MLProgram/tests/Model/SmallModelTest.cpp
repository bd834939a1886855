// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "LoadedFunction.h"
#include "Plan/PlanTesting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace MLProgram {

namespace {

// The stages of the model that comes with the source: real programs with trained weights.
class SmallModelTest : public ::testing::TestWithParam<std::string> { };
INSTANTIATE_TEST_SUITE_P(, SmallModelTest, ::testing::Values("mel", "encoder", "decoder"),
    [](const ::testing::TestParamInfo<std::string>& test) { return test.param; });

TEST_P(SmallModelTest, GivesTheSameByPlanAndByInterpreter)
{
    const std::filesystem::path model = SMALL_MODEL;
    const LoadedFunction loaded = loadFunction(model / (GetParam() + ".mlmodelc"), "");
    const Function& function = *loaded.function;
    const std::vector<Tensor> inputs = randomInputs(function);
    for (size_t i = 0; i < inputs.size(); ++i) {
        if (function.values[function.parameters[i]].name.ends_with("_mask"))
            std::ranges::fill(inputs[i].view().reals(), 1.0f); // all of the window is there
    }
    expectPlanAgreesWithInterpreter(function, inputs, 2e-3f);
}

} // namespace

} // namespace MLProgram
