// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <unistd.h>

#include <utility>

namespace Sorvane {

// An open file that is closed when it goes.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number)
        : number_(number)
    {
    }
    Descriptor(Descriptor&& other) noexcept
        : number_(std::exchange(other.number_, none))
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor()
    {
        if (isOpen())
            ::close(number_);
    }

    int number() const { return number_; }
    bool isOpen() const { return number_ != none; }

private:
    static constexpr int none = -1;

    int number_ = none;
};

} // namespace Sorvane
