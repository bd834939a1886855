// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/ModelTransport.h>
#include <PlatformSupport/URLSession.h>

#include <memory>

namespace ModelStore {

// The usual transport. Cancelling the task does not reach a download, which goes on to its end; see
// CancelableSpeechTransport.
//
// Errors: ModelStoreError io ("bad url: <url>", "tree <url>: HTTP <status>", "refs <url>: HTTP <status>",
//         "GET <url>: HTTP <status>" for a status outside 200 to 299); DecodingError; URLError
class FoundationTransport final : public ModelTransport {
public:
    explicit FoundationTransport(
        std::shared_ptr<PlatformSupport::URLSession> session = PlatformSupport::URLSession::shared());

    PlatformSupport::Awaitable<std::vector<RemoteEntry>> tree(std::string url) override;
    PlatformSupport::Awaitable<std::vector<std::string>> tags(std::string url) override;
    PlatformSupport::Awaitable<void> download(
        std::string url, std::string file, int64_t largestSize, BytesCallback onBytes) override;

private:
    std::shared_ptr<PlatformSupport::URLSession> session_;
};

} // namespace ModelStore
