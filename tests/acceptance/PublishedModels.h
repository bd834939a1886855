// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program.h"

#include <Sorvane/CleanupAssets.h>

#include <TestHub.h>

#include <filesystem>
#include <map>
#include <string>

// A hub with all that a first preparation downloads: the small English model in the place of the speech model, some
// bytes for the cleanup's weights and, for its tools, stand-ins. And a user who has none of it yet.
class PublishedModels {
public:
    PublishedModels();

    // What the archive of the tools is packed from; publishTools() packs it anew.
    std::filesystem::path tools() const { return folder_ / "llama-b10809"; }
    void publishTools();

    // In the place of the generator, a shell script that is run with the generator's arguments.
    void replaceGenerator(const std::string& script) const;

    // The pins that belong to it.
    const Sorvane::CleanupAssets& assets() const { return assets_; }

    // What the programs are to be run with.
    Environment environment() const;

    // A program of this build with these pins, for this user.
    Outcome run(const Words& words) const { return runProgram(words, environment()); }

    std::filesystem::path temporary() const { return folder_ / "tmp"; }
    std::filesystem::path speech() const { return folder_ / "cache/tarnwick-models/tarnwick/ostrel/v0.1.0"; }
    std::filesystem::path cleanup() const { return folder_ / "data/Sorvane/Cleanup/S1-mini-Q4"; }
    std::filesystem::path transcripts() const { return folder_ / "data/Sorvane/Transcripts"; }

    // Every file that is downloaded, by its place on this user's disk, with the published file.
    std::map<std::filesystem::path, std::filesystem::path> published() const;

    TestSupport::TestHub hub;

private:
    Sorvane::DownloadAsset assetOf(const std::filesystem::path& file, const std::string& path) const;
    void writePins() const;

    TemporaryFolder folder_;
    Sorvane::CleanupAssets assets_;
    std::filesystem::path weights_;
    std::filesystem::path archive_;
};
