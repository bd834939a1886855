// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <memory>

namespace PlatformSupport {

// Tells those who kept a weak reference to an object whether it is still there.
//
//     startTask(mainThread, [weak = self_.reference()]() -> Awaitable<void> {
//         co_await somethingLong();
//         if (auto* const self = weak.get()) ...    // null once the object is gone
//     });
//
// The thread of the object: it does not go while someone uses it.
template <typename T> class WeakReference {
public:
    explicit WeakReference(const std::shared_ptr<T*>& self)
        : self_(self)
    {
    }

    T* get() const
    {
        const auto self = self_.lock();
        return self ? *self : nullptr;
    }

private:
    std::weak_ptr<T*> self_;
};

// The object's own part: its last member, so that it is gone before anything else of the object is.
template <typename T> class WeakSelf {
public:
    explicit WeakSelf(T* self)
        : self_(std::make_shared<T*>(self))
    {
    }
    WeakSelf(const WeakSelf&) = delete;
    WeakSelf& operator=(const WeakSelf&) = delete;

    WeakReference<T> reference() const { return WeakReference<T>(self_); }

private:
    std::shared_ptr<T*> self_;
};

} // namespace PlatformSupport
