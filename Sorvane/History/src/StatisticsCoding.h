// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/LifetimeStatistics.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Sorvane {

// The text of the counters' file, kept in blocks, so that a change costs the encoding of one block and not of all.
//
// Copies share their blocks.
class StatisticsText {
public:
    // Encodes anew what holds these places, where the items are new or other than before.
    void update(const LifetimeStatistics& statistics, const std::vector<size_t>& places);

    // The text, in pieces that live as long as this object or a copy.
    std::vector<std::string_view> pieces() const;

private:
    std::vector<std::shared_ptr<const std::string>> blocks_;
};

// Throws StoredFormatError.
LifetimeStatistics decodedStatistics(std::string_view text);

} // namespace Sorvane
