// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Observers.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace PlatformSupport {
namespace {

TEST(Observers, AreToldInTheOrderInWhichTheyCame)
{
    Observers observers;
    std::string told;
    const auto first = observers.subscribe([&] { told += '1'; });
    const auto second = observers.subscribe([&] { told += '2'; });
    observers.notify();
    EXPECT_EQ(told, "12");
}

TEST(Observers, AreNotToldOnceTheirSubscriptionIsGone)
{
    Observers observers;
    int told = 0;
    auto subscription = observers.subscribe([&] { ++told; });
    subscription.reset();
    observers.notify();
    EXPECT_EQ(told, 0);
}

TEST(Observers, MayLeaveWhileTheyAreTold)
{
    Observers observers;
    int told = 0;
    Observers::Subscription first;
    Observers::Subscription second;
    first = observers.subscribe([&] {
        first.reset();
        second.reset();
        ++told;
    });
    second = observers.subscribe([&] { ++told; });
    observers.notify();
    observers.notify();
    EXPECT_EQ(told, 1);
}

TEST(Observers, ThatComeWhileOthersAreToldAreToldFromTheNextTimeOn)
{
    Observers observers;
    int told = 0;
    Observers::Subscription late;
    const auto first = observers.subscribe([&] {
        if (!late)
            late = observers.subscribe([&] { ++told; });
    });
    observers.notify();
    EXPECT_EQ(told, 0);
    observers.notify();
    EXPECT_EQ(told, 1);
}

TEST(Observers, MayOutliveTheObservedObject)
{
    std::optional<Observers> observers(std::in_place);
    const auto subscription = observers->subscribe([] {});
    observers.reset();
    EXPECT_TRUE(subscription);
}

} // namespace
} // namespace PlatformSupport
