// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <exception>
#include <string>

namespace PlatformSupport {

// An error that is nothing but a message to be shown.
class MessageError : public std::exception {
public:
    virtual std::string message() const = 0;

    // What errors are described by: the message.
    std::string description() const { return message(); }
};

} // namespace PlatformSupport
