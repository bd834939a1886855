// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "AppOrder.h"
#include "LifetimeCounters.h"
#include "TranscriptFolder.h"

#include <PlatformSupport/UTF8.h>
#include <PlatformSupport/WholeFile.h>
#include <Sorvane/HistoryDeletionError.h>
#include <Sorvane/TranscriptHistory.h>

#include <algorithm>
#include <cmath>
#include <ranges>
#include <unordered_set>
#include <utility>

namespace Sorvane {

namespace fs = std::filesystem;
using PlatformSupport::Durability;
using PlatformSupport::UUID;

namespace {

constexpr const char* unreadableTranscripts = "Some saved transcripts could not be read. Their files have been kept.";
constexpr const char* countersNotUpdated
    = "Lifetime statistics could not be updated. Existing totals and saved transcripts have been kept.";

fs::path withoutTrailingSlash(const fs::path& path)
{
    return path.has_filename() ? path : path.parent_path();
}

// The system's words, where it is the system that failed.
std::string description(const std::exception& error)
{
    const auto* const failure = dynamic_cast<const std::system_error*>(&error);
    return failure ? failure->code().message() : error.what();
}

TranscriptEntry makeEntry(const NewTranscript& transcript, const UUID& id)
{
    TranscriptEntry entry;
    entry.id = id;
    entry.text = PlatformSupport::repairedUTF8(transcript.text);
    entry.appName = PlatformSupport::repairedUTF8(transcript.appName);
    if (transcript.bundleIdentifier)
        entry.bundleIdentifier = PlatformSupport::repairedUTF8(*transcript.bundleIdentifier);
    entry.createdAt = transcript.createdAt;
    entry.duration = std::isfinite(transcript.duration) ? transcript.duration : 0;
    entry.harness = transcript.harness;
    return entry;
}

} // namespace

TranscriptHistory::TranscriptHistory(const fs::path& directory, PlatformSupport::UUIDSource& uuids)
    : directory_(withoutTrailingSlash(directory))
    , uuids_(uuids)
    , folder_(std::make_unique<TranscriptFolder>(directory_))
    , counters_(std::make_unique<LifetimeCounters>(directory_ / ".lifetime-statistics.json"))
{
    open();
}

TranscriptHistory::~TranscriptHistory() = default;

PlatformSupport::Observers::Subscription TranscriptHistory::subscribe(std::function<void()> observer)
{
    return observers_.subscribe(std::move(observer));
}

void TranscriptHistory::setErrorMessage(std::optional<std::string> message)
{
    errorMessage_ = std::move(message);
    observers_.notify();
}

const LifetimeStatistics& TranscriptHistory::lifetimeStatistics() const
{
    return counters_->statistics();
}

std::exception_ptr TranscriptHistory::lifetimeReadError() const
{
    return counters_->readError();
}

void TranscriptHistory::open()
{
    std::optional<std::string> trouble;
    try {
        readFolder();
    } catch (const std::exception& error) {
        trouble = "History could not be opened: " + description(error);
    }
    // Counters that were lost, or fell behind, are made up for by the transcripts that are there.
    counters_->read();
    persistLifetimeStatisticsOrTell();
    // A folder that cannot be opened takes no counters either; the cause is what the user should read.
    if (trouble)
        errorMessage_ = trouble;
}

void TranscriptHistory::readFolder()
{
    folder_->create();
    auto [transcripts, isComplete] = folder_->readAll(folder_->list());
    if (!isComplete)
        errorMessage_ = unreadableTranscripts;
    std::ranges::stable_sort(
        transcripts, std::ranges::greater(), [](const auto& transcript) { return transcript.entry.createdAt; });
    for (const auto& [entry, contribution] : transcripts | std::views::reverse)
        counters_->note({ entry.id, contribution });
    for (auto& transcript : transcripts)
        entries_.push_back(std::move(transcript.entry));

    const fs::path appOrder = directory_ / ".app-order.plist";
    if (exists(symlink_status(appOrder)))
        appOrder_ = decodedAppOrder(PlatformSupport::readFile(appOrder, maximumAppOrderSize));
}

void TranscriptHistory::persistLifetimeStatistics(Durability durability)
{
    counters_->persist(durability);
    lifetimeSummary_ = counters_->statistics().summary();
    lifetimeActivity_ = counters_->statistics().activity();
}

void TranscriptHistory::persistLifetimeStatisticsOrTell()
{
    try {
        // A newer file lost to a power failure is made up for at the next opening.
        persistLifetimeStatistics(Durability::content);
    } catch (const std::exception&) {
        lifetimeSummary_.reset();
        errorMessage_ = countersNotUpdated;
    }
}

TranscriptEntry TranscriptHistory::save(const NewTranscript& transcript)
{
    TranscriptEntry entry = makeEntry(transcript, uuids_.next());
    folder_->write(entry);
    entries_.insert(
        std::ranges::upper_bound(entries_, entry.createdAt, std::ranges::greater(), &TranscriptEntry::createdAt),
        entry);
    counters_->note({ entry.id, LifetimeStatistics::contribution(entry) });
    persistLifetimeStatisticsOrTell();
    observers_.notify();
    return entry;
}

void TranscriptHistory::applyCleanup(const std::string& text, const UUID& id)
{
    const auto found = std::ranges::find(entries_, id, &TranscriptEntry::id);
    if (found == entries_.end())
        throw fs::filesystem_error("no such transcript", std::make_error_code(std::errc::no_such_file_or_directory));
    TranscriptEntry cleaned = *found;
    if (!cleaned.rawText)
        cleaned.rawText = std::move(cleaned.text);
    cleaned.text = PlatformSupport::repairedUTF8(text);
    folder_->write(cleaned);
    counters_->note({ cleaned.id, LifetimeStatistics::contribution(cleaned) });
    *found = std::move(cleaned);
    persistLifetimeStatisticsOrTell();
    observers_.notify();
}

void TranscriptHistory::deleteEntries(const std::vector<TranscriptEntry>& entries)
{
    // The counters hold a transcript for good before its file goes.
    persistLifetimeStatistics(Durability::replacement);

    std::unordered_set<UUID> requested;
    for (const auto& entry : entries)
        requested.insert(entry.id);
    std::unordered_set<UUID> removed;
    int64_t failed = 0;
    for (const auto& entry : entries_) {
        if (!requested.contains(entry.id))
            continue;
        if (folder_->remove(entry.id))
            removed.insert(entry.id);
        else
            ++failed;
    }
    folder_->synchronise();
    std::erase_if(entries_, [&](const auto& entry) { return removed.contains(entry.id); });
    observers_.notify();
    if (failed > 0)
        throw HistoryDeletionError(failed, static_cast<int64_t>(removed.size()));
}

} // namespace Sorvane
