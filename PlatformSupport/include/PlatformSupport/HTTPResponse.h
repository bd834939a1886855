// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace PlatformSupport {

struct HTTPHeader {
    std::string name;
    std::string value;

    bool operator==(const HTTPHeader&) const = default;
};

// What a server answered, whatever its status.
struct HTTPResponse {
    int64_t status = 0;
    std::vector<HTTPHeader> headers; // as they came
    std::string body; // bytes

    bool operator==(const HTTPResponse&) const = default;

    bool isSuccess() const { return status >= 200 && status <= 299; }

    // The body as UTF-8, with what is not well-formed replaced.
    std::string text() const;

    // The value of the first header of that name, in whatever case of A to Z.
    std::optional<std::string> header(std::string_view name) const;
};

} // namespace PlatformSupport
