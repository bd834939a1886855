// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WordSum.h"

#include <PlatformSupport/Precondition.h>
#include <Sorvane/LifetimeStatistics.h>

#include <algorithm>
#include <cmath>

namespace Sorvane {

using TranscriptStatistics::Activity;
using TranscriptStatistics::Summary;

LifetimeStatistics::Contribution LifetimeStatistics::contribution(const TranscriptEntry& entry)
{
    const bool isLength = std::isfinite(entry.duration) && entry.duration >= 0;
    return { TranscriptStatistics::wordCount(entry.text), isLength ? entry.duration : 0, entry.createdAt };
}

void LifetimeStatistics::include(const TranscriptList& entries)
{
    for (const auto& entry : entries)
        include({ entry.id, contribution(entry) });
}

size_t LifetimeStatistics::include(const Item& item)
{
    const auto [found, isNew] = places_.try_emplace(item.id, items_.size());
    if (isNew)
        items_.push_back(item);
    else
        items_[found->second] = item;
    return found->second;
}

void LifetimeStatistics::takeBack(const PlatformSupport::UUID& id, const std::optional<Contribution>& former)
{
    const auto found = places_.find(id);
    PlatformSupport::precondition(found != places_.end(), "nothing was included under this id");
    if (former) {
        items_[found->second].contribution = *former;
        return;
    }
    PlatformSupport::precondition(found->second + 1 == items_.size(), "a later item is taken back first");
    items_.pop_back();
    places_.erase(found);
}

const LifetimeStatistics::Contribution* LifetimeStatistics::find(const PlatformSupport::UUID& id) const
{
    const auto found = places_.find(id);
    return found == places_.end() ? nullptr : &items_[found->second].contribution;
}

Summary LifetimeStatistics::summary() const
{
    Summary summary;
    for (const auto& [id, contribution] : items_) {
        summary.words = wordSum(summary.words, contribution.words);
        ++summary.transcripts;
        summary.recordingTime += contribution.recordingTime;
    }
    return summary;
}

std::vector<Activity> LifetimeStatistics::activity() const
{
    std::vector<Activity> activity;
    activity.reserve(items_.size());
    for (const auto& [id, contribution] : items_) {
        if (contribution.createdAt)
            activity.push_back({ *contribution.createdAt, contribution.words });
    }
    // Mostly it is in order, since transcripts come as time goes by.
    if (!std::ranges::is_sorted(activity, {}, &Activity::date))
        std::ranges::stable_sort(activity, {}, &Activity::date);
    return activity;
}

} // namespace Sorvane
