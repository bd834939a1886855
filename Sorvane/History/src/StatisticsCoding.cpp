// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "StatisticsCoding.h"

#include "ReferenceDate.h"
#include "StoredFields.h"

#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <charconv>

namespace Sorvane {

namespace {

using Item = LifetimeStatistics::Item;
using Contribution = LifetimeStatistics::Contribution;

// Some 200 microseconds of encoding. A file that is written in many small pieces takes the system twice the time.
constexpr size_t itemsPerBlock = 2048;

constexpr std::string_view opening = R"({"contributions":[)";
constexpr std::string_view closing = "]}";

template <typename Number> void append(std::string& text, Number number)
{
    char digits[32];
    const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), number);
    PlatformSupport::precondition(error == std::errc(), "a number has too many digits");
    text.append(digits, end);
}

void append(std::string& text, const Item& item)
{
    text += '"';
    text += item.id.text();
    text += R"(",{"words":)";
    append(text, item.contribution.words);
    text += R"(,"recordingTime":)";
    append(text, item.contribution.recordingTime);
    if (item.contribution.createdAt) {
        text += R"(,"createdAt":)";
        append(text, ReferenceDate::seconds(*item.contribution.createdAt));
    }
    text += '}';
}

// Each item but the very first with a comma before it.
std::string encodedBlock(const LifetimeStatistics& statistics, size_t block)
{
    const auto& items = statistics.items();
    const size_t first = block * itemsPerBlock;
    const size_t end = std::min(first + itemsPerBlock, items.size());
    std::string text;
    for (size_t place = first; place < end; ++place) {
        if (place > 0)
            text += ',';
        append(text, items[place]);
    }
    return text;
}

Contribution decodedContribution(const nlohmann::json& object)
{
    Contribution contribution;
    contribution.words = StoredFields::integer(object, "words");
    contribution.recordingTime = StoredFields::number(object, "recordingTime");
    if (const auto seconds = StoredFields::optionalNumber(object, "createdAt"))
        contribution.createdAt = ReferenceDate::date(*seconds);
    return contribution;
}

} // namespace

void StatisticsText::update(const LifetimeStatistics& statistics, const std::vector<size_t>& places)
{
    blocks_.resize((statistics.items().size() + itemsPerBlock - 1) / itemsPerBlock);
    for (const size_t place : places)
        blocks_[place / itemsPerBlock] = nullptr;
    for (size_t block = 0; block < blocks_.size(); ++block) {
        if (!blocks_[block])
            blocks_[block] = std::make_shared<const std::string>(encodedBlock(statistics, block));
    }
}

std::vector<std::string_view> StatisticsText::pieces() const
{
    std::vector<std::string_view> pieces { opening };
    pieces.insert(pieces.end(), blocks_.size(), {});
    std::ranges::transform(blocks_, pieces.begin() + 1, [](const auto& block) { return std::string_view(*block); });
    pieces.push_back(closing);
    return pieces;
}

LifetimeStatistics decodedStatistics(std::string_view text)
{
    const auto object = StoredFields::parse(text);
    const auto* const contributions = StoredFields::find(object, "contributions");
    if (!contributions || !contributions->is_array() || contributions->size() % 2 != 0)
        throw StoredFormatError("\"contributions\" is not a list of pairs");
    LifetimeStatistics statistics;
    for (auto element = contributions->begin(); element != contributions->end(); element += 2)
        statistics.include({ StoredFields::uuid(*element), decodedContribution(*(element + 1)) });
    return statistics;
}

} // namespace Sorvane
