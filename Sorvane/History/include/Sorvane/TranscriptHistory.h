// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Observers.h>
#include <PlatformSupport/UUID.h>
#include <PlatformSupport/WholeFile.h>
#include <Sorvane/LifetimeStatistics.h>
#include <Sorvane/TranscriptEntry.h>
#include <Sorvane/TranscriptStatistics.h>

#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Sorvane {

class LifetimeCounters;
class TranscriptFolder;

// What is known of a dictation when it is stored.
struct NewTranscript {
    std::string text;
    std::string appName;
    std::optional<std::string> bundleIdentifier;
    PlatformSupport::Clock::Date createdAt;
    double duration = 0; // seconds
    std::optional<CodingHarness> harness;
};

// Every finished dictation, one small file each in a private folder, and the counters over all that ever were.
//
// A transcript is in the list when its file has been written, and not before. Files that cannot be read are left as
// they are. One instance lives as long as the program; all on the main thread, where each operation takes the time of
// a small write. Folder and files are readable by the user alone.
class TranscriptHistory {
public:
    // Opens the folder, and makes it where there is none. What goes wrong is in errorMessage(). `uuids` must outlive
    // the history.
    TranscriptHistory(const std::filesystem::path& directory, PlatformSupport::UUIDSource& uuids);
    ~TranscriptHistory();
    TranscriptHistory(const TranscriptHistory&) = delete;
    TranscriptHistory& operator=(const TranscriptHistory&) = delete;

    // Told after each operation that changed something of what follows.
    [[nodiscard]] PlatformSupport::Observers::Subscription subscribe(std::function<void()> observer);

    // Newest first.
    const TranscriptList& entries() const { return entries_; }

    // The last trouble to show. It stands until it is replaced or taken away.
    const std::optional<std::string>& errorMessage() const { return errorMessage_; }
    void setErrorMessage(std::optional<std::string> message);

    // The applications as ".app-order.plist" has them, where the folder holds one.
    const std::vector<std::string>& appOrder() const { return appOrder_; }

    // Over all transcripts that ever were. The summary is absent when it could not be stored.
    const std::optional<TranscriptStatistics::Summary>& lifetimeSummary() const { return lifetimeSummary_; }
    const std::vector<TranscriptStatistics::Activity>& lifetimeActivity() const { return lifetimeActivity_; }
    const LifetimeStatistics& lifetimeStatistics() const;

    // Why the counters' file cannot be read; null if it can. Then it is never written, and nothing can be deleted.
    std::exception_ptr lifetimeReadError() const;

    const std::filesystem::path& directory() const { return directory_; }

    // Stores a transcript and returns it. Bytes that are no UTF-8 become U+FFFD, and a duration that is no number
    // becomes 0, so that no dictation is lost to them.
    //
    // Errors: std::filesystem::filesystem_error when the file cannot be written; nothing has changed.
    // Counters that cannot be stored are no error: they show in errorMessage().
    TranscriptEntry save(const NewTranscript& transcript);

    // Gives a transcript the text that cleanup made of it. The very first text stays in `rawText`.
    //
    // Errors: std::filesystem::filesystem_error when there is no such transcript (no_such_file_or_directory) or the
    //         file cannot be written; nothing has changed
    void applyCleanup(const std::string& text, const PlatformSupport::UUID& id);

    // Deletes the transcripts' files. What they added to the counters stays.
    //
    // Errors: what keeps the counters from being stored; nothing has been deleted
    //         HistoryDeletionError when some files could not be removed; their transcripts stay in the list
    void deleteEntries(const std::vector<TranscriptEntry>& entries);

private:
    void open();
    void readFolder();
    void persistLifetimeStatistics(PlatformSupport::Durability durability);
    void persistLifetimeStatisticsOrTell();

    std::filesystem::path directory_;
    PlatformSupport::UUIDSource& uuids_;
    PlatformSupport::Observers observers_;
    std::unique_ptr<TranscriptFolder> folder_;
    std::unique_ptr<LifetimeCounters> counters_;
    TranscriptList entries_;
    std::optional<std::string> errorMessage_;
    std::vector<std::string> appOrder_;
    std::optional<TranscriptStatistics::Summary> lifetimeSummary_;
    std::vector<TranscriptStatistics::Activity> lifetimeActivity_;
};

} // namespace Sorvane
