// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Sound/PrivateSoundServer.h"

#include <DesktopLinux/Sound.h>
#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/Task.h>

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace DesktopLinux {

namespace {

using DesktopServices::AuthorizationStatus;

class MicrophoneStatusTest : public testing::Test {
protected:
    AuthorizationStatus determined(const Sound& sound)
    {
        const auto determine = [&] { return sound.determineMicrophoneStatus(); };
        return loop.finish(PlatformSupport::startTask(loop.executor(), determine));
    }

    PlatformSupport::HandTurnedLoop loop;
    PrivateSoundServer server;
};

TEST_F(MicrophoneStatusTest, IsAuthorizedIfThereIsAMicrophone)
{
    server.addMicrophone("desk", 48000, 2);
    const Sound sound;
    EXPECT_EQ(determined(sound), AuthorizationStatus::authorized);
    EXPECT_EQ(sound.microphoneStatus(), AuthorizationStatus::authorized);
    EXPECT_EQ(determined(sound), AuthorizationStatus::authorized);
}

// The loudspeaker's own sound can be recorded, but is no microphone.
TEST_F(MicrophoneStatusTest, IsDeniedWithoutAMicrophone)
{
    const Sound sound;
    EXPECT_EQ(determined(sound), AuthorizationStatus::denied);
}

TEST_F(MicrophoneStatusTest, FollowsWhatIsPluggedIn)
{
    const Sound sound;
    EXPECT_EQ(determined(sound), AuthorizationStatus::denied);
    const auto module = server.addMicrophone("desk", 48000, 2);
    while (sound.microphoneStatus() != AuthorizationStatus::authorized) { }
    server.control("unload-module " + module);
    while (sound.microphoneStatus() != AuthorizationStatus::denied) { }
}

TEST_F(MicrophoneStatusTest, IsDeniedWithoutAServer)
{
    server.kill();
    const Sound sound;
    EXPECT_EQ(determined(sound), AuthorizationStatus::denied);
}

TEST_F(MicrophoneStatusTest, IsDeniedWhileTheServerDoesNotAnswer)
{
    server.freeze();
    const Sound sound;
    EXPECT_EQ(sound.microphoneStatus(), AuthorizationStatus::notDetermined);
    EXPECT_EQ(determined(sound), AuthorizationStatus::denied);
}

TEST_F(MicrophoneStatusTest, NeedNotBeWaitedFor)
{
    server.freeze();
    const Sound sound;
    const auto determine = [&] { return sound.determineMicrophoneStatus(); };
    const auto task = PlatformSupport::startTask(loop.executor(), determine);
    loop.turn();
    task.cancel();
    EXPECT_THROW(loop.finish(task), PlatformSupport::CancellationError);
}

// By which the user finds it in a list of processes.
TEST(SoundTest, LeavesThisProgramItsName)
{
    const auto name = [] {
        std::string line;
        std::ifstream file("/proc/self/comm");
        std::getline(file, line);
        return line;
    };
    const auto before = name();
    const Sound sound;
    EXPECT_EQ(name(), before);
}

} // namespace

} // namespace DesktopLinux
