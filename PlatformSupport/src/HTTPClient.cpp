// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/HTTPClient.h>
#include <PlatformSupport/URLError.h>
#include <PlatformSupport/URLSession.h>

#include <utility>

namespace PlatformSupport {

HTTPClientError::HTTPClientError(Case which, std::string message)
    : which_(which)
    , message_(std::move(message))
{
}

HTTPClientError HTTPClientError::requestFailed(std::string message)
{
    return { Case::requestFailed, std::move(message) };
}

HTTPClientError HTTPClientError::unsupportedPlatform()
{
    return { Case::unsupportedPlatform, "HTTP is not available on this system." };
}

HTTPClientError HTTPClientError::invalidURL()
{
    return { Case::invalidURL, "The address is not valid." };
}

Awaitable<HTTPResponse> httpGET(std::string url)
{
    return httpRequest("GET", std::move(url));
}

Awaitable<HTTPResponse> httpPOST(std::string url, std::string body, std::string contentType)
{
    return httpRequest("POST", std::move(url), std::move(body), std::move(contentType));
}

Awaitable<HTTPResponse> httpRequest(
    std::string method, std::string url, std::optional<std::string> body, std::optional<std::string> contentType)
{
    if (!isURL(url))
        throw HTTPClientError::invalidURL();
    URLRequest request { .url = std::move(url),
        .method = std::move(method),
        .body = std::move(body),
        .contentType = std::move(contentType) };
    try {
        co_return co_await URLSession::shared()->data(std::move(request));
    } catch (const URLError& error) {
        throw HTTPClientError::requestFailed(error.description());
    }
}

} // namespace PlatformSupport
