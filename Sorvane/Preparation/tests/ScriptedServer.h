// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/SHA256.h>
#include <PlatformSupport/TaskContext.h>
#include <Sorvane/VerifiedAssetCache.h>

#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace Sorvane {

inline std::string sha256(const std::string& bytes)
{
    return ModelStore::SHA256::hex(
        ModelStore::SHA256::digest(std::span(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size())));
}

// A network of which everything is known: addresses and what lies there. An address that nothing lies at is a network
// that cannot be reached.
struct ScriptedServer {
    // Serves the bytes at the address, and gives the asset that they are.
    DownloadAsset serve(const std::string& url, const std::string& bytes)
    {
        files[url] = bytes;
        return { url, bytes.size(), sha256(bytes) };
    }

    VerifiedAssetCache::Download download()
    {
        return [this](PlatformSupport::DownloadRequest request, PreparationProgress progress) {
            return answer(std::move(request), std::move(progress));
        };
    }

    PlatformSupport::Awaitable<PlatformSupport::TemporaryFile> answer(
        PlatformSupport::DownloadRequest request, PreparationProgress progress)
    {
        requests.push_back(request.url);
        const auto found = files.find(request.url);
        if (found == files.end())
            throw PlatformSupport::URLError(PlatformSupport::URLError::Code::notConnectedToInternet);
        PlatformSupport::TemporaryFile file(request.folder.value());
        file.write(found->second);
        for (const double fraction : { 0.5, 1.0 })
            progress(fraction);
        if (onAnswer)
            onAnswer();
        co_return file;
    }

    std::map<std::string, std::string> files;
    std::vector<std::string> requests;
    std::function<void()> onAnswer; // called when the file is there, before it is given away
};

} // namespace Sorvane
