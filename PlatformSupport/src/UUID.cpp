// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/UUID.h>

#include <boost/uuid/random_generator.hpp>

#include <algorithm>
#include <charconv>

namespace PlatformSupport {

namespace {

constexpr size_t textLength = 36;
constexpr size_t hyphens[] = { 8, 13, 18, 23 };

bool isHyphenPlace(size_t place)
{
    return std::ranges::find(hyphens, place) != std::end(hyphens);
}

} // namespace

std::optional<UUID> UUID::parse(std::string_view text)
{
    if (text.size() != textLength)
        return std::nullopt;
    UUID uuid;
    for (size_t place = 0, byte = 0; place < textLength;) {
        if (isHyphenPlace(place)) {
            if (text[place++] != '-')
                return std::nullopt;
            continue;
        }
        const char* const digits = text.data() + place;
        const auto [end, error] = std::from_chars(digits, digits + 2, uuid.value_.data[byte++], 16);
        if (error != std::errc() || end != digits + 2)
            return std::nullopt;
        place += 2;
    }
    return uuid;
}

std::string UUID::text() const
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(textLength);
    for (const auto byte : value_) {
        if (isHyphenPlace(text.size()))
            text += '-';
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

std::strong_ordering UUID::operator<=>(const UUID& other) const
{
    return std::lexicographical_compare_three_way(
        value_.begin(), value_.end(), other.value_.begin(), other.value_.end());
}

UUID RandomUUIDs::next()
{
    return UUID(boost::uuids::random_generator_pure()());
}

} // namespace PlatformSupport
