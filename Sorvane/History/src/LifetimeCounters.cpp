// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "LifetimeCounters.h"

#include <utility>

namespace Sorvane {

namespace {

// Some ten million transcripts.
constexpr size_t maximumFileSize = size_t { 1 } << 30;

// Returns the places of the items that were not there, or not the same.
std::vector<size_t> include(const std::vector<LifetimeStatistics::Item>& items, LifetimeStatistics& statistics)
{
    std::vector<size_t> changed;
    for (const auto& item : items) {
        const auto* const known = statistics.find(item.id);
        if (!known || *known != item.contribution)
            changed.push_back(statistics.include(item));
    }
    return changed;
}

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
    auto statistics = statistics_;
    auto text = text_;
    text.update(statistics, include(noted_, statistics));
    PlatformSupport::replaceFile(file_, text.pieces(), durability);
    statistics_ = std::move(statistics);
    text_ = std::move(text);
    noted_.clear();
}

} // namespace Sorvane
