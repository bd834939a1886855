// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/DownloadProgressObserver.h>

#include <gtest/gtest.h>

#include <vector>

namespace PlatformSupport {

namespace {

constexpr int64_t step = DownloadProgressObserver::step;

class DownloadProgressObserverTest : public testing::Test {
protected:
    std::vector<double> fractions;
    std::vector<int64_t> counts;
    DownloadProgressObserver observer { [this](double fraction) { fractions.push_back(fraction); },
        [this](int64_t bytes) { counts.push_back(bytes); } };
};

} // namespace

TEST_F(DownloadProgressObserverTest, ReportsAtEveryStep)
{
    observer(step - 1, 4 * step);
    EXPECT_TRUE(counts.empty());
    observer(step, 4 * step);
    observer(2 * step - 1, 4 * step);
    observer(2 * step + 7, 4 * step);
    observer(3 * step + 6, 4 * step);
    EXPECT_EQ(counts, (std::vector<int64_t> { step, 2 * step + 7 }));
    EXPECT_EQ(fractions.front(), 0.25);
}

TEST_F(DownloadProgressObserverTest, ReportsTheEndHoweverNear)
{
    observer(step, step + 1);
    observer(step + 1, step + 1);
    EXPECT_EQ(counts, (std::vector<int64_t> { step, step + 1 }));
    EXPECT_EQ(fractions.back(), 1);
}

TEST_F(DownloadProgressObserverTest, TellsNoFractionOfAnUnknownTotal)
{
    observer(step, -1);
    observer(2 * step, 0);
    EXPECT_EQ(counts.size(), 2);
    EXPECT_TRUE(fractions.empty());
}

TEST_F(DownloadProgressObserverTest, NeedsNoCallbacks)
{
    DownloadProgressObserver nobody({});
    EXPECT_NO_THROW(nobody(step, step));
}

} // namespace PlatformSupport
