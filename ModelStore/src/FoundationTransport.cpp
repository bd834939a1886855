// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "HubListing.h"

#include <ModelStore/FoundationTransport.h>
#include <ModelStore/ModelStoreError.h>
#include <PlatformSupport/DownloadProgressObserver.h>
#include <PlatformSupport/Task.h>

#include <filesystem>
#include <utility>

namespace ModelStore {

using namespace PlatformSupport;

namespace {

void requireURL(const std::string& url)
{
    if (!isURL(url))
        throw ModelStoreError::io("bad url: " + url);
}

void requireSuccess(const HTTPResponse& response, const std::string& what, const std::string& url)
{
    if (!response.isSuccess())
        throw ModelStoreError::io(what + " " + url + ": HTTP " + std::to_string(response.status));
}

Awaitable<std::string> listing(std::shared_ptr<URLSession> session, std::string what, std::string url)
{
    requireURL(url);
    URLRequest request { .url = url, .method = "GET", .body = {}, .contentType = {} };
    HTTPResponse response = co_await session->data(std::move(request));
    requireSuccess(response, what, url);
    co_return std::move(response.body);
}

Awaitable<void> downloadFile(
    std::shared_ptr<URLSession> session, DownloadRequest request, std::string file, DownloadProgressObserver observer)
{
    const std::string url = request.url;
    Downloaded result = co_await session->download(std::move(request), std::move(observer));
    requireSuccess(result.response, "GET", url);
    result.file.moveTo(file);
}

} // namespace

FoundationTransport::FoundationTransport(std::shared_ptr<URLSession> session)
    : session_(std::move(session))
{
}

Awaitable<std::vector<RemoteEntry>> FoundationTransport::tree(std::string url)
{
    const std::string json = co_await listing(session_, "tree", std::move(url));
    co_return decodeTree(json);
}

Awaitable<std::vector<std::string>> FoundationTransport::tags(std::string url)
{
    const std::string json = co_await listing(session_, "refs", std::move(url));
    co_return decodeTags(json);
}

Awaitable<void> FoundationTransport::download(
    std::string url, std::string file, int64_t largestSize, BytesCallback onBytes)
{
    requireURL(url);
    const DownloadRequest request {
        .url = std::move(url), .folder = std::filesystem::path(file).parent_path(), .largestSize = largestSize
    };
    const auto transfer = [session = session_, request, file, onBytes] {
        return downloadFile(session, request, file, DownloadProgressObserver({}, onBytes));
    };
    co_await withoutCancellation(transfer);
}

} // namespace ModelStore
