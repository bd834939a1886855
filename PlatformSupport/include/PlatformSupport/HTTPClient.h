// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/HTTPResponse.h>
#include <PlatformSupport/MessageError.h>

#include <optional>
#include <string>

namespace PlatformSupport {

// Why there is no response.
class HTTPClientError : public MessageError {
public:
    enum class Case { requestFailed, unsupportedPlatform, invalidURL };

    static HTTPClientError requestFailed(std::string message);
    static HTTPClientError unsupportedPlatform();
    static HTTPClientError invalidURL();

    Case which() const noexcept { return which_; }
    std::string message() const override { return message_; }
    const char* what() const noexcept override { return message_.c_str(); }

    bool operator==(const HTTPClientError& other) const { return which_ == other.which_ && message_ == other.message_; }

private:
    HTTPClientError(Case which, std::string message);

    Case which_;
    std::string message_;
};

// Single requests over URLSession::shared(). Every status is a response: what a 404 means is the caller's business.
//
// Errors: HTTPClientError invalidURL for an address that cannot be read; requestFailed with the words of the URLError
//         where no response came; CancellationError
Awaitable<HTTPResponse> httpGET(std::string url);
Awaitable<HTTPResponse> httpPOST(std::string url, std::string body, std::string contentType);
Awaitable<HTTPResponse> httpRequest(std::string method, std::string url, std::optional<std::string> body = std::nullopt,
    std::optional<std::string> contentType = std::nullopt);

} // namespace PlatformSupport
