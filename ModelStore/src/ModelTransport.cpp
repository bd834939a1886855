// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/ModelStoreError.h>
#include <ModelStore/ModelTransport.h>

namespace ModelStore {

using PlatformSupport::Awaitable;

Awaitable<std::vector<std::string>> ModelTransport::tags(std::string)
{
    throw ModelStoreError::io("tag listing not supported by this transport");
    co_return std::vector<std::string>();
}

Awaitable<void> ModelTransport::finishDownloads()
{
    co_return;
}

} // namespace ModelStore
