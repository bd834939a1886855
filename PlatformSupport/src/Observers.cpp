// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Observers.h>

#include <utility>

namespace PlatformSupport {

Observers::Subscription Observers::subscribe(std::function<void()> observer)
{
    auto subscription = std::make_shared<std::function<void()>>(std::move(observer));
    observers_.push_back(subscription);
    return subscription;
}

void Observers::notify()
{
    std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
    const auto present = observers_;
    for (const auto& observer : present) {
        if (const auto alive = observer.lock())
            (*alive)();
    }
}

} // namespace PlatformSupport
