// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/CancelableSpeechTransport.h>
#include <PlatformSupport/DownloadProgressObserver.h>
#include <PlatformSupport/TaskContext.h>

#include <filesystem>
#include <utility>

namespace ModelStore {

using namespace PlatformSupport;

CancelableSpeechTransport::CancelableSpeechTransport(std::shared_ptr<URLSession> session)
    : session_(std::move(session))
    , listings_(session_)
{
}

Awaitable<std::vector<RemoteEntry>> CancelableSpeechTransport::tree(std::string url)
{
    checkCancellation();
    co_return co_await listings_.tree(std::move(url));
}

Awaitable<std::vector<std::string>> CancelableSpeechTransport::tags(std::string url)
{
    checkCancellation();
    co_return co_await listings_.tags(std::move(url));
}

Awaitable<void> CancelableSpeechTransport::download(
    std::string url, std::string file, int64_t largestSize, BytesCallback onBytes)
{
    checkCancellation();
    DownloadRequest request {
        .url = std::move(url), .folder = std::filesystem::path(file).parent_path(), .largestSize = largestSize
    };
    DownloadProgressObserver observer({}, std::move(onBytes));
    Downloaded result = co_await session_->download(std::move(request), std::move(observer));
    checkCancellation();
    constexpr int64_t complete = 200; // not a part of the file, which counts as a success elsewhere
    if (result.response.status != complete)
        throw URLError(URLError::Code::badServerResponse);
    result.file.moveTo(file);
}

} // namespace ModelStore
