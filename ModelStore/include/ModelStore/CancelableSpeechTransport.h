// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/FoundationTransport.h>

namespace ModelStore {

// The transport for a user who may change his mind: cancelling the task ends a download at once and leaves nothing of
// it.
//
// Errors: those of FoundationTransport for listings; of a download URLError, badServerResponse for every status but
// 200;
//         CancellationError
class CancelableSpeechTransport final : public ModelTransport {
public:
    explicit CancelableSpeechTransport(std::shared_ptr<PlatformSupport::URLSession> session);

    PlatformSupport::Awaitable<std::vector<RemoteEntry>> tree(std::string url) override;
    PlatformSupport::Awaitable<std::vector<std::string>> tags(std::string url) override;
    PlatformSupport::Awaitable<void> download(
        std::string url, std::string file, int64_t largestSize, BytesCallback onBytes) override;

private:
    std::shared_ptr<PlatformSupport::URLSession> session_;
    FoundationTransport listings_;
};

} // namespace ModelStore
