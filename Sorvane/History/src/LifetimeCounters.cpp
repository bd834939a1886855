// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "LifetimeCounters.h"

#include <utility>

namespace Sorvane {

namespace {

// Some ten million transcripts.
constexpr size_t maximumFileSize = size_t { 1 } << 30;

// Items that are counted for as long as this lives, and for good once it is told to keep them.
class Inclusion {
public:
    explicit Inclusion(LifetimeStatistics& statistics)
        : statistics_(statistics)
    {
    }
    ~Inclusion()
    {
        for (auto change = changes_.rbegin(); !isKept_ && change != changes_.rend(); ++change)
            statistics_.takeBack(change->id, change->former);
    }
    Inclusion(const Inclusion&) = delete;
    Inclusion& operator=(const Inclusion&) = delete;

    // Returns the places of the items that were not there, or not the same.
    std::vector<size_t> include(const std::vector<LifetimeStatistics::Item>& items)
    {
        std::vector<size_t> places;
        places.reserve(items.size());
        changes_.reserve(items.size());
        for (const auto& item : items) {
            const auto* const known = statistics_.find(item.id);
            if (known && *known == item.contribution)
                continue;
            const Change change { item.id, known ? std::optional(*known) : std::nullopt };
            places.push_back(statistics_.include(item));
            changes_.push_back(change);
        }
        return places;
    }

    void keep() { isKept_ = true; }

private:
    struct Change {
        PlatformSupport::UUID id;
        std::optional<LifetimeStatistics::Contribution> former;
    };

    LifetimeStatistics& statistics_;
    std::vector<Change> changes_;
    bool isKept_ = false;
};

} // namespace

LifetimeCounters::LifetimeCounters(std::filesystem::path file)
    : file_(std::move(file))
{
}

void LifetimeCounters::read()
{
    try {
        if (!exists(symlink_status(file_)))
            return;
        statistics_ = decodedStatistics(PlatformSupport::readFile(file_, maximumFileSize));
        text_.update(statistics_, {});
    } catch (...) {
        readError_ = std::current_exception();
    }
}

void LifetimeCounters::note(const LifetimeStatistics::Item& item)
{
    noted_.push_back(item);
}

void LifetimeCounters::persist(PlatformSupport::Durability durability)
{
    if (readError_)
        std::rethrow_exception(readError_);
    Inclusion inclusion(statistics_);
    auto text = text_;
    text.update(statistics_, inclusion.include(noted_));
    PlatformSupport::replaceFile(file_, text.pieces(), durability);
    inclusion.keep();
    text_ = std::move(text);
    noted_.clear();
}

} // namespace Sorvane
