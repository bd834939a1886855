// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "HubListing.h"

#include <ModelStore/DecodingError.h>

#include <nlohmann/json.hpp>

#include <limits>

namespace ModelStore {

namespace {

using json = nlohmann::json;

// A listing needs four levels; more than a hub could come to mean are foul play.
constexpr int deepest = 32;

// Without the parser's own words, which may quote what was sent.
template <typename OnElement> json parsed(std::string_view text, const OnElement& onElement)
{
    const auto callback = [&](int depth, json::parse_event_t event, json& value) {
        if (depth > deepest)
            throw DecodingError("it is nested too deeply");
        return onElement(depth, event, value);
    };
    try {
        return json::parse(text, callback);
    } catch (const json::exception&) {
        throw DecodingError("it is no JSON");
    }
}

const json* optionalField(const json& object, const char* name)
{
    const auto field = object.find(name);
    return field == object.end() || field->is_null() ? nullptr : &*field;
}

const json& field(const json& object, const char* name)
{
    if (!object.is_object())
        throw DecodingError(std::string("what should have \"") + name + "\" is no object");
    const json* const found = optionalField(object, name);
    if (found == nullptr)
        throw DecodingError(std::string("\"") + name + "\" is missing");
    return *found;
}

std::string text(const json& object, const char* name)
{
    const json& value = field(object, name);
    if (!value.is_string())
        throw DecodingError(std::string("\"") + name + "\" is no text");
    return value.get<std::string>();
}

int64_t integer(const json& object, const char* name)
{
    const json& value = field(object, name);
    const bool fits = value.is_number_unsigned()
        ? value.get<uint64_t>() <= static_cast<uint64_t>(std::numeric_limits<int64_t>::max())
        : value.is_number_integer();
    if (!fits)
        throw DecodingError(std::string("\"") + name + "\" is no integer");
    return value.get<int64_t>();
}

struct TreeItem {
    std::string type;
    RemoteEntry entry;
};

TreeItem treeItem(const json& element)
{
    TreeItem item { .type = text(element, "type"),
        .entry = { .path = text(element, "path"), .size = integer(element, "size"), .sha256 = {} } };
    if (const json* const lfs = optionalField(element, "lfs"))
        item.entry.sha256 = text(*lfs, "oid");
    return item;
}

} // namespace

std::vector<RemoteEntry> decodeTree(std::string_view text)
{
    // Each element is read, and dropped, as soon as it is whole: a long listing does not stand in memory as JSON.
    std::vector<RemoteEntry> entries;
    const auto onElement = [&](int depth, json::parse_event_t event, const json& value) {
        const bool isElement = depth == 1
            && (event == json::parse_event_t::object_end || event == json::parse_event_t::array_end
                || event == json::parse_event_t::value);
        if (!isElement)
            return true;
        TreeItem item = treeItem(value);
        if (item.type == "file")
            entries.push_back(std::move(item.entry));
        return false;
    };
    if (!parsed(text, onElement).is_array())
        throw DecodingError("it is no list");
    return entries;
}

std::vector<std::string> decodeTags(std::string_view json)
{
    const auto refs = parsed(json, [](int, json::parse_event_t, const nlohmann::json&) { return true; });
    if (!refs.is_object())
        throw DecodingError("it is no object");
    std::vector<std::string> names;
    if (const auto* const tags = optionalField(refs, "tags")) {
        if (!tags->is_array())
            throw DecodingError("\"tags\" is no list");
        for (const auto& tag : *tags)
            names.push_back(text(tag, "name"));
    }
    return names;
}

} // namespace ModelStore
