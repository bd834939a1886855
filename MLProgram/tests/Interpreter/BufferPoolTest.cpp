// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Interpreter/BufferPool.h"

#include <MLProgram/MLModelError.h>

#include <gtest/gtest.h>

namespace MLProgram {
namespace {

TEST(BufferPool, GivesAReleasedBufferAgain)
{
    BufferPool pool(1000);
    const int32_t first = pool.acquire(100, BufferPool::none);
    const int32_t second = pool.acquire(100, BufferPool::none);
    EXPECT_NE(first, second);
    EXPECT_NE(pool.data(first), pool.data(second));
    pool.release(first);
    EXPECT_EQ(pool.acquire(80, BufferPool::none), first);
}

TEST(BufferPool, PrefersTheSmallestThatIsLargeEnough)
{
    BufferPool pool(1000);
    const int32_t large = pool.acquire(300, BufferPool::none);
    const int32_t medium = pool.acquire(200, BufferPool::none);
    const int32_t small = pool.acquire(100, BufferPool::none);
    for (const int32_t buffer : { large, medium, small })
        pool.release(buffer);
    EXPECT_EQ(pool.acquire(150, BufferPool::none), medium);
    EXPECT_EQ(pool.acquire(150, BufferPool::none), large);
}

TEST(BufferPool, TakesThePreferredBufferWhileItFits)
{
    BufferPool pool(1000);
    const int32_t large = pool.acquire(300, BufferPool::none);
    const int32_t small = pool.acquire(100, BufferPool::none);
    pool.release(large);
    pool.release(small);
    EXPECT_EQ(pool.acquire(50, large), large);
    EXPECT_EQ(pool.acquire(50, large), small) << "it is taken";
    pool.release(small);
    EXPECT_NE(pool.acquire(200, small), small) << "it is too small";
}

TEST(BufferPool, RefusesToGrowBeyondItsMaximum)
{
    BufferPool pool(250);
    pool.release(pool.acquire(200, BufferPool::none));
    EXPECT_NO_THROW(pool.acquire(200, BufferPool::none));
    EXPECT_THROW(pool.acquire(100, BufferPool::none), MLModelError);
}

TEST(BufferPool, GivesEmptyTensorsAnAddress)
{
    BufferPool pool(100);
    EXPECT_NE(pool.data(pool.acquire(0, BufferPool::none)), nullptr);
}

} // namespace
} // namespace MLProgram
