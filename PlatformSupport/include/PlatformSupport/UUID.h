// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <boost/uuid/uuid.hpp>

#include <compare>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace PlatformSupport {

// An identity that nothing else has: 128 bits, written as "E621E1F8-C36C-495A-93FC-0C247A3E6E5F".
class UUID {
public:
    // All bits zero.
    UUID() = default;
    explicit UUID(const boost::uuids::uuid& value)
        : value_(value)
    {
    }

    // Exactly the written form, in capitals, small letters or both; otherwise nothing.
    static std::optional<UUID> parse(std::string_view text);

    // In capitals.
    std::string text() const;

    bool operator==(const UUID&) const = default;
    std::strong_ordering operator<=>(const UUID& other) const;

private:
    friend struct std::hash<UUID>;
    boost::uuids::uuid value_ {};
};

// Where new identities come from, so that a test can know them beforehand.
//
// Any thread.
class UUIDSource {
public:
    virtual ~UUIDSource() = default;
    virtual UUID next() = 0;
};

// From the system's randomness.
class RandomUUIDs final : public UUIDSource {
public:
    UUID next() override;
};

} // namespace PlatformSupport

template <> struct std::hash<PlatformSupport::UUID> {
    size_t operator()(const PlatformSupport::UUID& uuid) const noexcept { return hash_value(uuid.value_); }
};
