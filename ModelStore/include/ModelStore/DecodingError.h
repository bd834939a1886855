// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/MessageError.h>

#include <string>

namespace ModelStore {

// What a hub sent is not what it should be.
class DecodingError : public PlatformSupport::MessageError {
public:
    explicit DecodingError(const std::string& reason)
        : message_("The hub’s answer could not be read: " + reason + ".")
    {
    }

    std::string message() const override { return message_; }
    const char* what() const noexcept override { return message_.c_str(); }

private:
    std::string message_;
};

} // namespace ModelStore
