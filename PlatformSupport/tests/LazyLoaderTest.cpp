// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/LazyLoader.h>
#include <PlatformSupport/Suspension.h>

#include <gmock/gmock.h>

#include <stdexcept>

namespace PlatformSupport {

using testing::ElementsAre;

namespace {

class LazyLoaderTest : public testing::Test {
protected:
    using Loader = LazyLoader<int>;

    // Work that goes on when the test says so, and then ends as the test says.
    Awaitable<int> work(Loader::Progress progress)
    {
        ++runs;
        report = std::move(progress);
        co_await suspend([this](const Resumer& resumer) { goOn.emplace(resumer); });
        if (fails)
            throw std::runtime_error("no");
        co_return 40 + runs;
    }
    void endWork()
    {
        loop.turn();
        const Resumer resumer = *goOn;
        goOn.reset();
        resumer.resume();
        loop.turn();
    }
    void reportFraction(double fraction)
    {
        report(fraction);
        loop.turn();
    }

    Task<int> startValue()
    {
        return startTask(loop.executor(), [this] { return loader.value(); });
    }
    Task<int> startRun(std::vector<double>& fractions)
    {
        return startTask(loop.executor(), [this, &fractions] {
            return loader.run([&fractions](double fraction) { fractions.push_back(fraction); });
        });
    }

    HandTurnedLoop loop;
    std::optional<Resumer> goOn;
    Loader::Progress report;
    int runs = 0;
    bool fails = false;
    Loader loader { loop.executor(), [this](Loader::Progress progress) { return work(std::move(progress)); } };
};

} // namespace

TEST_F(LazyLoaderTest, DoesTheWorkOnceForAll)
{
    const auto first = startValue();
    const auto second = startValue();
    endWork();
    EXPECT_EQ(loop.finish(first), 41);
    EXPECT_EQ(loop.finish(second), 41);
    EXPECT_EQ(loop.finish(startValue()), 41);
    EXPECT_EQ(runs, 1);
}

TEST_F(LazyLoaderTest, StartsAgainAfterAFailure)
{
    fails = true;
    std::vector<double> fractions;
    const auto first = startValue();
    const auto second = startRun(fractions);
    loop.turn();
    reportFraction(0.7);
    endWork();
    EXPECT_THROW(loop.finish(first), std::runtime_error);
    EXPECT_THROW(loop.finish(second), std::runtime_error);
    EXPECT_THAT(fractions, ElementsAre(0, 0.7));

    fails = false;
    fractions.clear();
    const auto third = startRun(fractions);
    loop.turn();
    reportFraction(0.1); // from the start again
    endWork();
    EXPECT_EQ(loop.finish(third), 42);
    EXPECT_THAT(fractions, ElementsAre(0.7, 0.1, 1));
}

TEST_F(LazyLoaderTest, LeavesANewRunAloneWhenAnOldOnesWaiterComesLate)
{
    fails = true;
    const auto first = startValue();
    const auto second = startTask(loop.executor(), [&]() -> Awaitable<int> {
        try {
            co_await loader.value();
        } catch (const std::runtime_error&) { // and asks again at once
        }
        co_return co_await loader.value();
    });
    endWork();
    fails = false;
    const auto third = startValue();
    endWork();
    EXPECT_THROW(loop.finish(first), std::runtime_error);
    EXPECT_EQ(loop.finish(second), 42);
    EXPECT_EQ(loop.finish(third), 42);
    EXPECT_EQ(runs, 2);
}

TEST_F(LazyLoaderTest, TellsFractionsThatOnlyRise)
{
    std::vector<double> early;
    std::vector<double> late;
    const auto first = startRun(early);
    loop.turn();
    for (const double fraction : { 0.2, 0.6, 0.4, 0.6 })
        reportFraction(fraction);
    const auto second = startRun(late);
    loop.turn();
    reportFraction(0.8);
    endWork();
    EXPECT_EQ(loop.finish(first), loop.finish(second));
    EXPECT_THAT(early, ElementsAre(0, 0.2, 0.6, 0.8, 1));
    EXPECT_THAT(late, ElementsAre(0.6, 0.8, 1));
}

TEST_F(LazyLoaderTest, TellsTheEndTwiceToWhoComesAfterIt)
{
    std::vector<double> fractions;
    const auto first = startValue();
    loop.turn();
    reportFraction(1);
    endWork();
    EXPECT_EQ(loop.finish(startRun(fractions)), loop.finish(first));
    EXPECT_THAT(fractions, ElementsAre(1, 1));
}

TEST_F(LazyLoaderTest, GoesOnWithoutWhoAskedForIt)
{
    const auto impatient = startValue();
    loop.turn();
    impatient.cancel();
    loop.turn();
    endWork();
    EXPECT_EQ(loop.finish(startValue()), 41);
    EXPECT_EQ(runs, 1);
}

TEST_F(LazyLoaderTest, IsNotKeptByItsOwnReports)
{
    {
        Loader shortLived(loop.executor(), [this](Loader::Progress progress) { return work(std::move(progress)); });
        startTask(loop.executor(), [&shortLived] { return shortLived.value(); });
        loop.turn();
    }
    EXPECT_NO_THROW(reportFraction(0.5));
    endWork();
    EXPECT_NO_THROW(reportFraction(0.6)); // to nobody
}

} // namespace PlatformSupport
