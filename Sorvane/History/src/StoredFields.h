// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/UUID.h>

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Sorvane {

// A stored file is not what it should be. What it says is for the developer's eye.
class StoredFormatError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Reading the fields of stored JSON objects, by us or by another program: keys in any order, keys that nobody knows,
// whole numbers written either way.
namespace StoredFields {

// Throws StoredFormatError.
nlohmann::json parse(std::string_view text);

// The value under the key; null where there is none. Throws StoredFormatError if `object` is none.
const nlohmann::json* find(const nlohmann::json& object, const char* key);

// What stands under the key. The optional ones are absent where the key is, or its value is null.
//
// Errors: StoredFormatError when a required one is absent or a value is of another type
std::string string(const nlohmann::json& object, const char* key);
double number(const nlohmann::json& object, const char* key);
int64_t integer(const nlohmann::json& object, const char* key);
std::optional<std::string> optionalString(const nlohmann::json& object, const char* key);
std::optional<double> optionalNumber(const nlohmann::json& object, const char* key);

// Throws StoredFormatError.
PlatformSupport::UUID uuid(const nlohmann::json& value);

} // namespace StoredFields

} // namespace Sorvane
