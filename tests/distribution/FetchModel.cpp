// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// fetch-model ENDPOINT FOLDER REPOSITORY REVISION FILE...: downloads a model as the application does. For tests that
// end it in the middle, and for measuring.
#include <ModelStore/CancelableSpeechTransport.h>
#include <ModelStore/FoundationFileSystem.h>
#include <ModelStore/ModelStore.h>
#include <PlatformSupport/BlockingValue.h>

#include <cstdio>

int main(int count, char** words)
{
    if (count < 6) {
        std::fputs("fetch-model ENDPOINT FOLDER REPOSITORY REVISION FILE...\n", stderr);
        return 2;
    }
    const auto transport
        = std::make_shared<ModelStore::CancelableSpeechTransport>(PlatformSupport::URLSession::shared());
    const ModelStore::ModelStore store(
        transport, std::make_shared<ModelStore::FoundationFileSystem>(words[2]), words[1]);
    const ModelStore::ModelSpec spec {
        .repo = words[3], .revision = words[4], .files = { words + 5, words + count }, .cacheDirectory = {}
    };
    try {
        const auto model = PlatformSupport::blockingValue([&] { return store.download(spec, {}); });
        std::puts(model.rootPath.c_str());
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
