// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Transfer.h"
#include "TransferLoop.h"

#include <PlatformSupport/Environment.h>
#include <PlatformSupport/Task.h>
#include <PlatformSupport/URLSession.h>
#include <PlatformSupport/UserFolders.h>

#include <curl/curl.h>

#include <utility>

namespace PlatformSupport {

namespace {

// Until the transfer is over, whatever way. What its callbacks touch may go only after that, so a cancellation does not
// cut the wait short but ends the transfer.
Awaitable<void> untilFinished(std::shared_ptr<TransferLoop> loop, std::shared_ptr<Transfer> transfer)
{
    const auto start = [loop, transfer](const Resumer& waiter) {
        transfer->setWaiter(waiter);
        loop->add(transfer);
    };
    const auto operation = [&start] { return suspend(start); };
    const auto onCancel = [loop, transfer] {
        transfer->cancel();
        loop->wake();
    };
    co_await withCancellationHandler(operation, onCancel);
}

Awaitable<HTTPResponse> answer(std::shared_ptr<TransferLoop> loop, std::shared_ptr<Transfer> transfer)
{
    co_await untilFinished(std::move(loop), transfer);
    co_return transfer->takeResponse();
}

Awaitable<Downloaded> downloaded(std::shared_ptr<TransferLoop> loop, std::shared_ptr<Transfer> transfer)
{
    co_await untilFinished(std::move(loop), transfer);
    co_return transfer->takeDownloaded();
}

std::filesystem::path usualFolder()
{
    return UserFolders::fromEnvironment().caches / "com.nerith.sorvane" / "downloads";
}

TemporaryFile temporaryFile(const std::filesystem::path& folder)
{
    try {
        return TemporaryFile(folder);
    } catch (const std::filesystem::filesystem_error& error) {
        throw URLError::cannotWriteToFile(error.code().message());
    }
}

URLSessionOptions sharedOptions()
{
    URLSessionOptions options;
    const std::string certificates = environmentVariable("SSL_CERT_FILE").value_or("");
    if (!certificates.empty())
        options.certificates = certificates;
    return options;
}

} // namespace

URLSession::URLSession(Options options)
    : options_(std::move(options))
    , loop_(std::make_shared<TransferLoop>())
{
}

URLSession::~URLSession()
{
    loop_->close();
}

const std::shared_ptr<URLSession>& URLSession::shared()
{
    static const auto session = std::make_shared<URLSession>(sharedOptions());
    return session;
}

Awaitable<HTTPResponse> URLSession::data(URLRequest request)
{
    return answer(loop_, std::make_shared<Transfer>(std::move(request), options_));
}

Awaitable<Downloaded> URLSession::download(DownloadRequest request, DidWrite didWrite)
{
    const URLRequest get { .url = std::move(request.url), .method = "GET", .body = {}, .contentType = {} };
    auto transfer = std::make_shared<Transfer>(get, options_);
    transfer->writeTo(
        temporaryFile(request.folder ? *request.folder : usualFolder()), request.largestSize, std::move(didWrite));
    return downloaded(loop_, std::move(transfer));
}

bool isURL(std::string_view text)
{
    CURLU* const url = ::curl_url();
    const CURLUcode code = ::curl_url_set(url, CURLUPART_URL, std::string(text).c_str(), CURLU_NON_SUPPORT_SCHEME);
    ::curl_url_cleanup(url);
    return code == CURLUE_OK;
}

} // namespace PlatformSupport
