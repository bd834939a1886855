// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "PublishedModels.h"

#include <ModelStore/SHA256.h>

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr auto archiveName = "llama-b10809-bin-ubuntu-x64.tar.gz";
constexpr size_t weightsSize = 3'000'000; // bytes; several of the pieces that are reported

std::string contents(const fs::path& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

std::string sha256(const std::string& bytes)
{
    return ModelStore::SHA256::hex(
        ModelStore::SHA256::digest(std::span(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size())));
}

} // namespace

PublishedModels::PublishedModels()
{
    fs::create_directories(hub.folder() / "models/tarnwick/ostrel");
    fs::create_directory_symlink(SMALL_MODEL_DIRECTORY, hub.folder() / "models/tarnwick/ostrel/v0.1.0");
    weights_
        = hub.publish("superwhisper/s1-mini-GGUF", "34add00a", "s1-mini-q4_k_m.gguf", std::string(weightsSize, 'w'));
    assets_.runtimeVersion = "b10809";
    assets_.weights = assetOf(weights_, "/superwhisper/s1-mini-GGUF/resolve/34add00a/s1-mini-q4_k_m.gguf");
    fs::create_directory(temporary());
    fs::create_directory(tools());
    for (const char* const tool : { "llama-completion", "llama-tokenize" })
        fs::copy_file(fs::path(CLEANUP_TOOLS_DIRECTORY) / tool, tools() / tool);
    publishTools();
}

void PublishedModels::publishTools()
{
    const std::string archive = folder_ / archiveName;
    const std::string tar = "tar -czf " + archive + " -C " + tools().parent_path().string() + " llama-b10809";
    if (std::system(tar.c_str()) != 0)
        throw std::runtime_error("failed: " + tar);
    archive_ = hub.release("ggml-org/llama.cpp", "b10809", archiveName, contents(archive));
    assets_.runtime = assetOf(archive_, std::string("/ggml-org/llama.cpp/releases/download/b10809/") + archiveName);
    writePins();
}

void PublishedModels::replaceGenerator(const std::string& script) const
{
    fs::remove(tools() / "llama-completion");
    std::ofstream(tools() / "llama-completion") << "#!/bin/sh\n" << script << '\n';
    fs::permissions(tools() / "llama-completion", fs::perms::owner_all);
}

Sorvane::DownloadAsset PublishedModels::assetOf(const fs::path& file, const std::string& path) const
{
    const std::string bytes = contents(file);
    return { .url = hub.origin() + path, .bytes = bytes.size(), .sha256 = sha256(bytes) };
}

void PublishedModels::writePins() const
{
    const auto json = [](const Sorvane::DownloadAsset& asset) {
        return nlohmann::json { { "url", asset.url }, { "bytes", asset.bytes }, { "sha256", asset.sha256 } };
    };
    std::ofstream(folder_ / "pins.json") << nlohmann::json { { "version", assets_.runtimeVersion },
        { "weights", json(assets_.weights) }, { "runtime", json(assets_.runtime) } };
}

Environment PublishedModels::environment() const
{
    return { { "TEST_PINS", folder_ / "pins.json" }, { "TRW_HUB_ENDPOINT", hub.origin() },
        { "OSTREL_MODEL_DIRECTORY", "" }, { "XDG_CACHE_HOME", folder_ / "cache" },
        { "XDG_DATA_HOME", folder_ / "data" }, { "TMPDIR", temporary() } };
}

std::map<fs::path, fs::path> PublishedModels::published() const
{
    std::map<fs::path, fs::path> files { { cleanup() / "model.gguf", weights_ },
        { cleanup() / "downloads" / archiveName, archive_ } };
    const fs::path model = SMALL_MODEL_DIRECTORY;
    for (const auto& entry : fs::recursive_directory_iterator(model))
        if (entry.is_regular_file())
            files.emplace(speech() / entry.path().lexically_relative(model), entry.path());
    return files;
}
