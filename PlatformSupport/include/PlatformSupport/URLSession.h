// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/HTTPResponse.h>
#include <PlatformSupport/TemporaryFile.h>
#include <PlatformSupport/URLError.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace PlatformSupport {

class TransferLoop;

struct URLRequest {
    std::string url;
    std::string method = "GET";
    std::optional<std::string> body;
    std::optional<std::string> contentType;
};

struct DownloadRequest {
    std::string url;

    // Where the temporary file lies; best where it is to go, since to move it there is then a matter of its name.
    // Otherwise a folder in the user's caches: the temporary directory is often in memory.
    std::optional<std::filesystem::path> folder;

    // A server that sends more is cut off.
    std::optional<int64_t> largestSize; // bytes
};

struct Downloaded {
    HTTPResponse response; // its body is empty, or the page of a status outside 200 to 299
    TemporaryFile file; // the body; empty with such a status
};

struct URLSessionOptions {
    // A transfer in which no byte moves for so long has timed out.
    std::chrono::milliseconds inactivityLimit { 60'000 };

    // Longest body that is held in memory.
    size_t largestBody = size_t { 16 } << 20;

    // A file of certificates to trust instead of the system's.
    std::optional<std::filesystem::path> certificates;
};

// Talks to servers over http and https, and nothing else.
//
// Redirects are followed as browsers do, at most 20, and never from https to http. Proxies come from the environment
// (http_proxy, https_proxy, all_proxy, no_proxy), but not to this computer itself. Neither credentials nor cookies nor
// headers beyond what HTTP needs are sent. Connections are kept for the next request.
//
// Any thread; all transfers run on one thread of the session's own. Cancelling the waiting task ends its transfer at
// once. Transfers that still run when the session goes end with URLError cancelled.
//
// Errors: URLError; CancellationError
class URLSession {
public:
    using Options = URLSessionOptions;

    // On the session's thread, one at a time and never after the download has ended; `expectedBytes` is -1 if the
    // server does not tell. What it throws ends the download. DownloadProgressObserver thins these calls out.
    using DidWrite = std::function<void(int64_t bytes, int64_t expectedBytes)>;

    explicit URLSession(Options options = {});
    URLSession(const URLSession&) = delete;
    URLSession& operator=(const URLSession&) = delete;
    ~URLSession();

    // The program's own, with the usual options; certificates come from the file that SSL_CERT_FILE names, if any.
    static const std::shared_ptr<URLSession>& shared();

    // The whole answer, in memory. Every status is an answer.
    Awaitable<HTTPResponse> data(URLRequest request);

    // The body in a temporary file; every status is an answer.
    Awaitable<Downloaded> download(DownloadRequest request, DidWrite didWrite = {});

private:
    Options options_;
    std::shared_ptr<TransferLoop> loop_;
};

// Whether the text can be read as an address at all.
bool isURL(std::string_view text);

} // namespace PlatformSupport
