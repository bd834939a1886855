// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>
#include <PlatformSupport/UUID.h>
#include <Sorvane/TranscriptEntry.h>
#include <Sorvane/TranscriptStatistics.h>

#include <boost/unordered/unordered_flat_map.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace Sorvane {

// Totals that outlive the transcripts they were counted from: three numbers for each transcript that ever was, and none
// of its words. A plain value.
class LifetimeStatistics {
public:
    struct Contribution {
        int64_t words = 0;
        double recordingTime = 0; // seconds
        std::optional<PlatformSupport::Clock::Date> createdAt;

        bool operator==(const Contribution&) const = default;
    };

    struct Item {
        PlatformSupport::UUID id;
        Contribution contribution;

        bool operator==(const Item&) const = default;
    };

    // What a transcript adds: the words of its present text, and its duration if that is a length of time.
    static Contribution contribution(const TranscriptEntry& entry);

    // Each entry's contribution takes the place of the one it made before.
    void include(const TranscriptList& entries);

    // The item's contribution takes the place of the one before. Returns its place among the items.
    size_t include(const Item& item);

    // Undoes the latest include() of an item: `former` is the contribution that it replaced, absent where there was
    // none. Of several, the latest is taken back first.
    void takeBack(const PlatformSupport::UUID& id, const std::optional<Contribution>& former);

    // In the order in which the transcripts first came; at most one for each.
    const std::vector<Item>& items() const { return items_; }

    const Contribution* find(const PlatformSupport::UUID& id) const;

    TranscriptStatistics::Summary summary() const;

    // Of the contributions that have a date, oldest first.
    std::vector<TranscriptStatistics::Activity> activity() const;

private:
    std::vector<Item> items_;
    boost::unordered_flat_map<PlatformSupport::UUID, size_t, std::hash<PlatformSupport::UUID>> places_; // in `items_`
};

} // namespace Sorvane
