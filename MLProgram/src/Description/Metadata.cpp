// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Description/Metadata.h"

#include <MLProgram/MLModelError.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace MLProgram {
namespace {

using Json = nlohmann::json;

[[noreturn]] void fail(const std::string& fault)
{
    throw MLModelError(MLModelError::Case::invalidProgram, "metadata.json: " + fault);
}

const Json* find(const Json& object, const char* key)
{
    const auto found = object.find(key);
    return found == object.end() ? nullptr : &*found;
}

std::string text(const Json& object, const char* key)
{
    const Json* const value = find(object, key);
    return value != nullptr && value->is_string() ? value->get<std::string>() : std::string();
}

bool flag(const Json& object, const char* key)
{
    return text(object, key) == "1";
}

int64_t integer(const Json& value)
{
    if (!value.is_number_integer())
        fail("a dimension is not an integer");
    return value.get<int64_t>();
}

std::vector<int64_t> integers(const Json& list)
{
    if (!list.is_array())
        fail("a shape is not a list");
    std::vector<int64_t> values;
    std::transform(list.begin(), list.end(), std::back_inserter(values), integer);
    return values;
}

std::vector<std::vector<int64_t>> listsOfIntegers(const Json& lists)
{
    if (!lists.is_array())
        fail("the shapes are not a list");
    std::vector<std::vector<int64_t>> values;
    std::transform(lists.begin(), lists.end(), std::back_inserter(values), integers);
    return values;
}

// Shapes are JSON within a string; absent ones are empty.
Json embedded(const Json& feature, const char* key)
{
    const std::string value = text(feature, key);
    if (value.empty())
        return Json::array();
    Json parsed = Json::parse(value, nullptr, false);
    if (parsed.is_discarded())
        fail(std::string(key) + " is not JSON");
    return parsed;
}

MLMultiArrayDataType dataType(const Json& feature)
{
    constexpr std::pair<std::string_view, MLMultiArrayDataType> names[] {
        { "Float16", MLMultiArrayDataType::float16 },
        { "Float32", MLMultiArrayDataType::float32 },
        { "Double", MLMultiArrayDataType::float64 },
        { "Int32", MLMultiArrayDataType::int32 },
        { "Int8", MLMultiArrayDataType::int8 },
    };
    const std::string name = text(feature, "dataType");
    const auto found
        = std::find_if(std::begin(names), std::end(names), [&](const auto& pair) { return pair.first == name; });
    if (found == std::end(names))
        throw MLModelError(MLModelError::Case::unsupported,
            "the feature \"" + text(feature, "name") + "\" has elements of the unknown type \"" + name + "\"");
    return found->second;
}

MLMultiArrayConstraint constraint(const Json& feature)
{
    MLMultiArrayConstraint found;
    found.dataType = dataType(feature);
    found.shape = integers(embedded(feature, "shape"));
    if (!flag(feature, "hasShapeFlexibility"))
        return found;
    for (const auto& bounds : listsOfIntegers(embedded(feature, "shapeRange"))) {
        if (bounds.size() != 2)
            fail("a range of shapes has not two bounds");
        found.shapeRange.emplace_back(bounds[0], bounds[1]);
    }
    found.enumeratedShapes = listsOfIntegers(embedded(feature, "enumeratedShapes"));
    return found;
}

std::map<std::string, MLFeatureDescription> features(const Json& function, const char* key)
{
    std::map<std::string, MLFeatureDescription> found;
    const Json* const schema = find(function, key);
    if (schema == nullptr)
        return found;
    if (!schema->is_array())
        fail(std::string(key) + " is not a list");
    for (const Json& feature : *schema) {
        if (!feature.is_object())
            fail("a feature is not an object");
        MLFeatureDescription description { text(feature, "name"), std::nullopt, flag(feature, "isOptional") };
        if (text(feature, "type") == "MultiArray")
            description.multiArrayConstraint = constraint(feature);
        found.emplace(description.name, std::move(description));
    }
    return found;
}

std::map<std::string, std::string> userDefinedMetadata(const Json& model)
{
    std::map<std::string, std::string> found;
    const Json* const entries = find(model, "userDefinedMetadata");
    if (entries == nullptr || !entries->is_object())
        return found;
    for (const auto& [key, value] : entries->items()) {
        if (value.is_string())
            found.emplace(key, value.get<std::string>());
    }
    return found;
}

bool isProgram(const Json& model)
{
    const Json* const type = find(model, "modelType");
    const std::string name = type != nullptr && type->is_object() ? text(*type, "name") : std::string();
    return name.empty() || name == "MLModelType_mlProgram";
}

} // namespace

BundleDescription readMetadata(std::string_view json)
{
    const Json document = Json::parse(json, nullptr, false);
    if (!document.is_array() || document.empty() || !document.front().is_object())
        fail("it is not a list with one object");
    const Json& model = document.front();
    BundleDescription description;
    description.isProgram = isProgram(model);
    if (!description.isProgram)
        return description;
    const auto metadata = userDefinedMetadata(model);
    const auto add = [&](const std::string& name, const Json& function) {
        description.functions.emplace(name,
            MLModelDescription { features(function, "inputSchema"), features(function, "outputSchema"), metadata });
    };
    const Json* const functions = find(model, "functions");
    if (functions == nullptr || !functions->is_array() || functions->empty()) {
        add(std::string(), model);
        return description;
    }
    for (const Json& function : *functions) {
        if (!function.is_object())
            fail("a function is not an object");
        add(text(function, "name"), function);
    }
    description.defaultFunctionName = text(model, "defaultFunctionName");
    return description;
}

} // namespace MLProgram
