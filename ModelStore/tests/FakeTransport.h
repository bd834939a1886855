// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/ModelTransport.h>
#include <ModelStore/SHA256.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace ModelStore {

// A hub in memory.
class FakeTransport final : public ModelTransport {
public:
    // A file that is listed as it is.
    void add(const std::string& path, const std::string& content, bool isLarge = true)
    {
        contents[path] = content;
        RemoteEntry entry { .path = path, .size = static_cast<int64_t>(content.size()), .sha256 = {} };
        if (isLarge)
            entry.sha256
                = SHA256::hex(SHA256::digest({ reinterpret_cast<const uint8_t*>(content.data()), content.size() }));
        listing.push_back(entry);
    }

    PlatformSupport::Awaitable<std::vector<RemoteEntry>> tree(std::string url) override
    {
        asked.push_back(url);
        co_return listing;
    }

    PlatformSupport::Awaitable<std::vector<std::string>> tags(std::string url) override
    {
        asked.push_back(url);
        if (!published)
            throw std::runtime_error("no network");
        co_return *published;
    }

    PlatformSupport::Awaitable<void> download(
        std::string url, std::string file, int64_t largestSize, BytesCallback onBytes) override
    {
        asked.push_back(url);
        largestSizes.push_back(largestSize);
        foundStaging = foundStaging || std::filesystem::exists(file);
        for (const auto& [path, content] : contents) {
            if (!url.ends_with("/" + path))
                continue;
            std::ofstream(file) << content;
            if (broken == path)
                throw std::runtime_error("the line is broken");
            onBytes(static_cast<int64_t>(content.size()));
        }
        co_return;
    }

    PlatformSupport::Awaitable<void> finishDownloads() override
    {
        ++finished;
        co_return;
    }

    std::vector<RemoteEntry> listing;
    std::map<std::string, std::string> contents; // by path; one that is missing leaves no file behind
    std::optional<std::vector<std::string>> published; // tags; nothing for no network
    std::string broken; // the path of which half comes
    std::vector<std::string> asked; // addresses
    std::vector<int64_t> largestSizes;
    bool foundStaging = false; // a download began over an old file
    int finished = 0;
};

} // namespace ModelStore
