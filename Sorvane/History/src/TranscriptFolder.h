// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/UUID.h>
#include <Sorvane/LifetimeStatistics.h>
#include <Sorvane/TranscriptEntry.h>

#include <filesystem>
#include <string>
#include <vector>

namespace Sorvane {

// A transcript as it was read, and what it adds to the counters.
struct StoredTranscript {
    TranscriptEntry entry;
    LifetimeStatistics::Contribution contribution;
};

// The private folder of the transcripts, one file for each.
class TranscriptFolder {
public:
    explicit TranscriptFolder(std::filesystem::path path);

    // Makes the folder, with its parents, where there is none. Throws std::filesystem::filesystem_error.
    void create() const;

    // The names of the files that hold transcripts, in their order. Removes what an ended process left unfinished.
    // Throws std::filesystem::filesystem_error.
    std::vector<std::string> list() const;

    struct Contents {
        std::vector<StoredTranscript> transcripts; // in the order of the files
        bool isComplete = true; // whether every file could be read
    };

    // Several threads share the work.
    Contents readAll(const std::vector<std::string>& names) const;

    // Throws std::filesystem::filesystem_error.
    void write(const TranscriptEntry& entry) const;

    // Whether the transcript's file was there and could be removed.
    bool remove(const PlatformSupport::UUID& id) const;

    // Makes removals last through a power failure, as far as that can be had.
    void synchronise() const;

private:
    std::filesystem::path fileOf(const PlatformSupport::UUID& id) const;

    std::filesystem::path path_;
};

} // namespace Sorvane
