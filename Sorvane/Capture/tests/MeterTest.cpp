// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Meter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace Sorvane {

namespace {

std::vector<float> constant(double decibels)
{
    return std::vector<float>(700, static_cast<float>(std::pow(10, decibels / 20)));
}

} // namespace

TEST(Meter, GivesNothingForSilence)
{
    EXPECT_EQ(meterLevel(std::vector<float>(683, 0.0F)), 0);
    EXPECT_EQ(meterLevel({}), 0);
}

TEST(Meter, GivesAFullScaleSineItsPlaceBelowTheTop)
{
    std::vector<float> sine;
    for (int i = 0; i < 1600; ++i)
        sine.push_back(static_cast<float>(std::sin(2 * std::numbers::pi * i / 16)));
    EXPECT_NEAR(meterLevel(sine), (10 * std::log10(0.5) + 55) / 55, 1e-5);
    EXPECT_NEAR(meterLevel(sine), 0.945, 5e-4);
}

TEST(Meter, IsLinearInDecibels)
{
    EXPECT_NEAR(meterLevel(constant(0)), 1, 1e-5);
    EXPECT_NEAR(meterLevel(constant(-11)), 0.8, 1e-5);
    EXPECT_NEAR(meterLevel(constant(-27.5)), 0.5, 1e-5);
    EXPECT_NEAR(meterLevel(constant(-54)), 1 / 55.0, 1e-5);
}

TEST(Meter, StaysBetweenZeroAndOne)
{
    EXPECT_EQ(meterLevel(constant(-56)), 0);
    EXPECT_EQ(meterLevel(constant(-200)), 0);
    EXPECT_EQ(meterLevel(constant(6)), 1);
}

TEST(Meter, SurvivesSamplesThatAreNoNumbers)
{
    EXPECT_EQ(meterLevel(std::vector { std::numeric_limits<float>::quiet_NaN() }), 0);
    EXPECT_EQ(meterLevel(std::vector { std::numeric_limits<float>::infinity() }), 1);
}

} // namespace Sorvane
