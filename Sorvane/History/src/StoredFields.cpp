// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "StoredFields.h"

#include <cmath>

namespace Sorvane::StoredFields {

namespace {

using nlohmann::json;

[[noreturn]] void refuse(const char* key, const char* complaint)
{
    throw StoredFormatError("key \"" + std::string(key) + "\" " + complaint);
}

const json& required(const json& object, const char* key)
{
    const json* const value = find(object, key);
    if (!value)
        refuse(key, "is absent");
    return *value;
}

const std::string& asString(const json& value, const char* key)
{
    if (!value.is_string())
        refuse(key, "is not a string");
    return value.get_ref<const std::string&>();
}

double asNumber(const json& value, const char* key)
{
    if (!value.is_number())
        refuse(key, "is not a number");
    return value.get<double>();
}

} // namespace

json parse(std::string_view text)
{
    try {
        return json::parse(text);
    } catch (const json::exception& error) {
        throw StoredFormatError(error.what());
    }
}

const json* find(const json& object, const char* key)
{
    if (!object.is_object())
        throw StoredFormatError("not a JSON object");
    const auto found = object.find(key);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

std::string string(const json& object, const char* key)
{
    return asString(required(object, key), key);
}

double number(const json& object, const char* key)
{
    return asNumber(required(object, key), key);
}

int64_t integer(const json& object, const char* key)
{
    const json& value = required(object, key);
    if (value.is_number_unsigned() && value.get<uint64_t>() > INT64_MAX)
        refuse(key, "does not fit 64 bits");
    if (value.is_number_integer())
        return value.get<int64_t>();

    constexpr double firstBeyond = 0x1p63;
    const double whole = asNumber(value, key);
    if (whole != std::trunc(whole) || whole < -firstBeyond || whole >= firstBeyond)
        refuse(key, "is not a whole number of 64 bits");
    return static_cast<int64_t>(whole);
}

std::optional<std::string> optionalString(const json& object, const char* key)
{
    const json* const value = find(object, key);
    return value ? std::optional(asString(*value, key)) : std::nullopt;
}

std::optional<double> optionalNumber(const json& object, const char* key)
{
    const json* const value = find(object, key);
    return value ? std::optional(asNumber(*value, key)) : std::nullopt;
}

PlatformSupport::UUID uuid(const json& value)
{
    const auto parsed = PlatformSupport::UUID::parse(asString(value, "id"));
    if (!parsed)
        throw StoredFormatError("not a UUID");
    return *parsed;
}

} // namespace Sorvane::StoredFields
