// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/ModelTransport.h>
#include <PlatformSupport/URLError.h>

namespace Sorvane {

// A network that is gone: whatever is asked for fails at once.
class OfflineTransport final : public ModelStore::ModelTransport {
public:
    PlatformSupport::Awaitable<std::vector<ModelStore::RemoteEntry>> tree(std::string) override { fail(); }
    PlatformSupport::Awaitable<std::vector<std::string>> tags(std::string) override { fail(); }
    PlatformSupport::Awaitable<void> download(std::string, std::string, int64_t, BytesCallback) override { fail(); }

private:
    [[noreturn]] static void fail()
    {
        throw PlatformSupport::URLError(PlatformSupport::URLError::Code::notConnectedToInternet);
    }
};

} // namespace Sorvane
