// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/VoiceOrb.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>

namespace Sorvane {
namespace {

using namespace std::chrono_literals;

constexpr OrbResponse::Instant start { 1000s };

double levelAt(double decibels)
{
    return (decibels + 55) / 55;
}

TEST(OrbEnergy, GoesFromMinus48ToMinus12Decibels)
{
    EXPECT_NEAR(orbEnergy(levelAt(-48), true, Motion::full), 0, 1e-12);
    EXPECT_NEAR(orbEnergy(levelAt(-30), true, Motion::full), 0.5, 1e-12);
    EXPECT_NEAR(orbEnergy(levelAt(-12), true, Motion::full), 1, 1e-12);
}

TEST(OrbEnergy, StaysWithinItsRange)
{
    EXPECT_EQ(orbEnergy(0, true, Motion::full), 0);
    EXPECT_EQ(orbEnergy(-3, true, Motion::full), 0);
    EXPECT_EQ(orbEnergy(1, true, Motion::full), 1);
    EXPECT_EQ(orbEnergy(7, true, Motion::full), 1);
}

TEST(OrbEnergy, IsNothingUnlessRecordingInFullMotionWithAUsableLevel)
{
    EXPECT_EQ(orbEnergy(0.9, false, Motion::full), 0);
    EXPECT_EQ(orbEnergy(0.9, true, Motion::reduced), 0);
    EXPECT_EQ(orbEnergy(std::numeric_limits<double>::quiet_NaN(), true, Motion::full), 0);
    EXPECT_EQ(orbEnergy(std::numeric_limits<double>::infinity(), true, Motion::full), 0);
}

TEST(OrbResponse, RestsAtNothingBeforeItsFirstTarget)
{
    const OrbResponse response;
    EXPECT_EQ(response.state(start).value, 0);
    EXPECT_EQ(response.state(start).velocity, 0);
}

TEST(OrbResponse, FollowsTheClosedFormOfACriticallyDampedSpring)
{
    OrbResponse response;
    response.retarget(1, start);
    for (const auto time : { 0ms, 10ms, 50ms, 200ms, 1000ms }) {
        const double t = std::chrono::duration<double>(time).count();
        const auto state = response.state(start + time);
        EXPECT_NEAR(state.value, 1 - std::exp(-24 * t) * (1 + 24 * t), 1e-12);
        EXPECT_NEAR(state.velocity, 24 * 24 * t * std::exp(-24 * t), 1e-9);
    }
}

TEST(OrbResponse, NeverJumpsWhenTheTargetChanges)
{
    OrbResponse response;
    response.retarget(1, start);
    const auto turn = start + 40ms;
    const auto before = response.state(turn);
    response.retarget(0.2, turn);
    const auto after = response.state(turn);
    EXPECT_NEAR(after.value, before.value, 1e-12);
    EXPECT_NEAR(after.velocity, before.velocity, 1e-12);
    EXPECT_NEAR(response.state(turn + 2900ms).value, 0.2, 1e-9);
}

TEST(OrbResponse, IsSettledAfterThreeSeconds)
{
    OrbResponse response;
    response.retarget(0.7, start);
    EXPECT_EQ(response.state(start + 3s).value, 0.7);
    EXPECT_EQ(response.state(start + 3s).velocity, 0);
}

TEST(OrbResponse, TakesTimeBeforeItsStartForItsStart)
{
    OrbResponse response;
    response.retarget(1, start);
    EXPECT_EQ(response.state(start - 1s).value, 0);
}

TEST(OrbResponse, TakesTargetsOutsideItsRangeForTheNearestWithin)
{
    OrbResponse response;
    response.retarget(5, start);
    EXPECT_EQ(response.state(start + 3s).value, 1);
    response.retarget(-5, start + 4s);
    EXPECT_EQ(response.state(start + 8s).value, 0);
    response.retarget(std::numeric_limits<double>::quiet_NaN(), start + 9s);
    EXPECT_EQ(response.state(start + 13s).value, 0);
}

} // namespace
} // namespace Sorvane
