// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "JSONFields.h"

#include <Ostrel/DecodingError.h>

#include <nlohmann/json.hpp>

namespace Ostrel::JSONFields {

namespace {

using nlohmann::json;

[[noreturn]] void refuse(const char* key, const char* complaint)
{
    throw DecodingError("key \"" + std::string(key) + "\" " + complaint);
}

const json& field(const json& object, const char* key)
{
    if (!object.is_object())
        throw DecodingError("not a JSON object");
    const auto found = object.find(key);
    if (found == object.end())
        refuse(key, "is absent");
    return *found;
}

int64_t asInteger(const json& value, const char* key)
{
    if (!value.is_number_integer())
        refuse(key, "is not an integer");
    if (value.is_number_unsigned() && value.get<uint64_t>() > INT64_MAX)
        refuse(key, "does not fit 64 bits");
    return value.get<int64_t>();
}

} // namespace

const std::string& string(const json& object, const char* key)
{
    const json& value = field(object, key);
    if (!value.is_string())
        refuse(key, "is not a string");
    return value.get_ref<const std::string&>();
}

double number(const json& object, const char* key)
{
    const json& value = field(object, key);
    if (!value.is_number())
        refuse(key, "is not a number");
    return value.get<double>();
}

int64_t integer(const json& object, const char* key)
{
    return asInteger(field(object, key), key);
}

std::vector<int64_t> integers(const json& object, const char* key)
{
    const json& value = field(object, key);
    if (!value.is_array())
        refuse(key, "is not an array");
    std::vector<int64_t> result;
    for (const json& element : value)
        result.push_back(asInteger(element, key));
    return result;
}

std::vector<std::string> strings(const json& array)
{
    if (!array.is_array())
        throw DecodingError("not a JSON array");
    std::vector<std::string> result;
    result.reserve(array.size());
    for (const json& element : array) {
        if (!element.is_string())
            throw DecodingError("element " + std::to_string(result.size()) + " is not a string");
        result.push_back(element.get_ref<const std::string&>());
    }
    return result;
}

} // namespace Ostrel::JSONFields
