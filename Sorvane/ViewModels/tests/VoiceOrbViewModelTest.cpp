// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <Sorvane/VoiceOrbViewModel.h>

#include <gtest/gtest.h>

#include <chrono>

namespace Sorvane {
namespace {

using namespace std::chrono_literals;

class VoiceOrb : public ::testing::Test {
protected:
    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::HandTurnedClock clock { loop };
    VoiceOrbViewModel orb { clock };
};

TEST_F(VoiceOrb, LiesStillBeforeAndAfterARecording)
{
    orb.advance();
    EXPECT_EQ(orb.energy(), 0);
    EXPECT_EQ(orb.phase(), 0);
    orb.follow(1, true);
    clock.advance(1s);
    orb.advance();
    EXPECT_GT(orb.energy(), 0.99);
    orb.follow(0, false);
    EXPECT_FALSE(orb.active());
    EXPECT_EQ(orb.energy(), 0);
    EXPECT_EQ(orb.phase(), 0);
}

TEST_F(VoiceOrb, GoesTowardsTheLevelWithoutAJump)
{
    orb.follow(1, true);
    EXPECT_EQ(orb.energy(), 0);
    double before = 0;
    for (int picture = 0; picture < 20; ++picture) {
        clock.advance(16ms);
        orb.advance();
        EXPECT_GT(orb.energy(), before);
        EXPECT_LT(orb.energy() - before, 0.2);
        before = orb.energy();
    }
}

TEST_F(VoiceOrb, TurnsTwoRadiansASecondSinceItWasMade)
{
    orb.follow(0.5, true);
    clock.advance(3s);
    orb.advance();
    EXPECT_NEAR(orb.phase(), 6, 1e-9);
}

} // namespace
} // namespace Sorvane
