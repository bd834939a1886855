// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Sound/PrivateSoundServer.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <vector>

namespace DesktopLinux {

namespace {

pid_t spawn(const std::string& command)
{
    const auto child = ::vfork();
    if (child == 0) {
        ::execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), nullptr);
        ::_exit(127);
    }
    return child;
}

void end(pid_t& child)
{
    if (child == 0)
        return;
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    child = 0;
}

} // namespace

PrivateSoundServer::PrivateSoundServer()
{
    ::setenv("PULSE_SERVER", ("unix:" + (folder_ / "socket").string()).c_str(), 1);
    start();
}

PrivateSoundServer::~PrivateSoundServer()
{
    endTone();
    kill();
}

void PrivateSoundServer::start()
{
    const auto socket = (folder_ / "socket").string();
    const auto log = (folder_ / "log").string();
    server_
        = spawn("pulseaudio -n --daemonize=no --use-pid-file=no --exit-idle-time=-1 --realtime=no --high-priority=no"
                " -L 'module-native-protocol-unix auth-anonymous=1 socket="
            + socket + "' -L 'module-null-sink sink_name=speaker' >" + log + " 2>&1");
    while (control("info").empty()) { }
}

void PrivateSoundServer::kill()
{
    end(server_);
}

void PrivateSoundServer::freeze() const
{
    ::kill(server_, SIGSTOP);
}

std::string PrivateSoundServer::control(const std::string& words) const
{
    auto* const pipe = ::popen(("pactl " + words + " 2>/dev/null").c_str(), "r");
    std::array<char, 4096> bytes {};
    const auto count = std::fread(bytes.data(), 1, bytes.size(), pipe);
    ::pclose(pipe);
    return { bytes.data(), count };
}

std::string PrivateSoundServer::addMicrophone(const std::string& name, int sampleRate, int channels) const
{
    const auto form = " rate=" + std::to_string(sampleRate) + " channels=" + std::to_string(channels);
    control("load-module module-null-sink norewinds=1 sink_name=into-" + name + form);
    const auto module
        = control("load-module module-remap-source source_name=" + name + " master=into-" + name + ".monitor" + form);
    EXPECT_FALSE(module.empty());
    control("set-default-source " + name);
    return module;
}

// Such a source works at the pace of who writes into its file.
void PrivateSoundServer::addHastyMicrophone(const std::string& name)
{
    const auto file = (folder_ / name).string();
    EXPECT_FALSE(control(
        "load-module module-pipe-source format=s16le rate=16000 channels=1 source_name=" + name + " file=" + file)
                     .empty());
    control("set-default-source " + name);
    player_ = spawn("cat /dev/zero >" + file);
}

void PrivateSoundServer::beginTone(const std::string& microphone, int frequency)
{
    constexpr int rate = 48000;
    std::vector<std::int16_t> tone(60 * rate);
    for (size_t i = 0; i < tone.size(); ++i)
        tone[i] = std::int16_t(16000 * std::sin(2 * std::numbers::pi * frequency * double(i) / rate));
    const auto file = folder_.write(
        "tone", std::span(reinterpret_cast<const std::uint8_t*>(tone.data()), tone.size() * sizeof tone[0]));
    player_ = spawn("pacat --playback --raw --format=s16le --rate=48000 --channels=1 --latency-msec=50 --device=into-"
        + microphone + " " + file.string());
}

void PrivateSoundServer::endTone()
{
    end(player_);
}

} // namespace DesktopLinux
