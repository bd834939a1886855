// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/PlanTesting.h"
#include "Plan/RandomFunction.h"

namespace MLProgram {

namespace {

class RandomPlanTest : public EveryKernelSet { };
INSTANTIATE_TEST_SUITE_P(, RandomPlanTest, ::testing::ValuesIn(allKernelsOfThisProcessor()), kernelSetName);

TEST_P(RandomPlanTest, AgreesWithTheInterpreterOnRandomFunctions)
{
    constexpr unsigned functions = 150;
    for (unsigned seed = 0; seed < functions; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        ASSERT_NO_FATAL_FAILURE(expectPlanAgreesWithInterpreter(randomFunction(seed), kernels()));
    }
}

} // namespace

} // namespace MLProgram
