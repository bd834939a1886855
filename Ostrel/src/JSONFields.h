// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>
#include <vector>

// Fields of a JSON object, strictly typed. Errors: DecodingError for a value that is no object, a key that is
// absent, a value of another type, or an integer that does not fit 64 bits.
namespace Ostrel::JSONFields {

const std::string& string(const nlohmann::json& object, const char* key);
double number(const nlohmann::json& object, const char* key);
int64_t integer(const nlohmann::json& object, const char* key);
std::vector<int64_t> integers(const nlohmann::json& object, const char* key);

// All elements of an array of strings.
std::vector<std::string> strings(const nlohmann::json& array);

} // namespace Ostrel::JSONFields
