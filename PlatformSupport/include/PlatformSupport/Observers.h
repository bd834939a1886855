// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace PlatformSupport {

// Who wants to know when an object changes.
//
// One thread, the object's. An observer may come or go, itself included, while it is being told; one that comes
// then is told from the next time on. Subscriptions may outlive the observed object.
class Observers {
public:
    // Ends the observation when it goes.
    using Subscription = std::shared_ptr<void>;

    [[nodiscard]] Subscription subscribe(std::function<void()> observer);

    // Tells everyone, in the order in which they came.
    void notify();

private:
    std::vector<std::weak_ptr<std::function<void()>>> observers_;
};

} // namespace PlatformSupport
