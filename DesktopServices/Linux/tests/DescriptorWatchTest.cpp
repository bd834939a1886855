// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "DescriptorWatch.h"

#include <PlatformSupport/HandTurnedLoop.h>

#include <gtest/gtest.h>

#include <array>
#include <optional>

namespace DesktopLinux {

namespace {

using PlatformSupport::FileDescriptor;
using PlatformSupport::HandTurnedLoop;

struct Pipe {
    Pipe()
    {
        std::array<int, 2> ends {};
        EXPECT_EQ(::pipe(ends.data()), 0);
        readEnd = FileDescriptor(ends[0]);
        writeEnd = FileDescriptor(ends[1]);
    }
    void write() const { EXPECT_EQ(::write(writeEnd.number(), "x", 1), 1); }
    void read() const
    {
        char byte = 0;
        EXPECT_EQ(::read(readEnd.number(), &byte, 1), 1);
    }

    FileDescriptor readEnd;
    FileDescriptor writeEnd;
};

TEST(DescriptorWatch, CallsForEachThingThatCanBeRead)
{
    HandTurnedLoop loop;
    const Pipe pipe;
    int calls = 0;
    const DescriptorWatch watch(loop.executor(), pipe.readEnd.number(), [&] {
        pipe.read();
        ++calls;
    });
    pipe.write();
    loop.turnUntil([&] { return calls == 1; });
    pipe.write();
    pipe.write();
    loop.turnUntil([&] { return calls == 3; });
}

TEST(DescriptorWatch, CallsAgainWhileSomethingIsLeft)
{
    HandTurnedLoop loop;
    const Pipe pipe;
    int calls = 0;
    const DescriptorWatch watch(loop.executor(), pipe.readEnd.number(), [&] { ++calls; });
    pipe.write();
    loop.turnUntil([&] { return calls == 3; });
}

TEST(DescriptorWatch, TellsOfAnEndThatWasClosed)
{
    HandTurnedLoop loop;
    Pipe pipe;
    int calls = 0;
    const DescriptorWatch watch(loop.executor(), pipe.readEnd.number(), [&] { ++calls; });
    pipe.writeEnd = {};
    loop.turnUntil([&] { return calls > 0; });
}

TEST(DescriptorWatch, CanBeDestroyedByWhatItCalls)
{
    HandTurnedLoop loop;
    const Pipe pipe;
    int calls = 0;
    std::optional<DescriptorWatch> watch;
    watch.emplace(loop.executor(), pipe.readEnd.number(), [&] {
        ++calls;
        watch.reset();
    });
    pipe.write();
    loop.turnUntil([&] { return calls == 1; });
    loop.turn();
    EXPECT_EQ(calls, 1);
}

TEST(DescriptorWatch, CallsNobodyOnceItIsGone)
{
    HandTurnedLoop loop;
    const Pipe pipe;
    int calls = 0;
    std::optional<DescriptorWatch> watch;
    watch.emplace(loop.executor(), pipe.readEnd.number(), [&] { ++calls; });
    pipe.write();
    watch.reset();
    loop.turn();
    EXPECT_EQ(calls, 0);
}

} // namespace

} // namespace DesktopLinux
