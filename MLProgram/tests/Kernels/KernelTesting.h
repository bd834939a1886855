// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/KernelSet.h"

#include <PlatformSupport/Float16.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace MLProgram {

// Tests that every kernel set of this processor has to pass.
class EveryKernelSet : public ::testing::TestWithParam<const KernelSet*> {
protected:
    const KernelSet& kernels() const { return *GetParam(); }
};

inline std::string kernelSetName(const ::testing::TestParamInfo<const KernelSet*>& info)
{
    std::string name(info.param->name);
    std::erase(name, '-');
    return name;
}

// Values that are 16-bit floats exactly, about -range to range; always the same for the same seed.
inline std::vector<float> randomValues(int64_t count, unsigned seed, float range = 1.0f)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> distribution(-range, range);
    std::vector<float> values(static_cast<size_t>(count));
    for (float& value : values)
        value = PlatformSupport::toFloat(PlatformSupport::toFloat16(distribution(random)));
    return values;
}

inline std::vector<PlatformSupport::Float16> halves(const std::vector<float>& values)
{
    std::vector<PlatformSupport::Float16> result(values.size());
    PlatformSupport::toFloat16(values, result);
    return result;
}

inline void expectNear(const std::vector<float>& actual, const std::vector<float>& expected, float tolerance)
{
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < actual.size(); ++i)
        ASSERT_NEAR(actual[i], expected[i], tolerance * std::max(1.0f, std::fabs(expected[i]))) << "at " << i;
}

} // namespace MLProgram
