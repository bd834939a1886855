// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TranscriptCoding.h"

#include "ReferenceDate.h"
#include "StoredFields.h"

namespace Sorvane::TranscriptCoding {

namespace {

std::optional<CodingHarness> decodedHarness(const nlohmann::json& object)
{
    const auto text = StoredFields::optionalString(object, "harness");
    if (!text)
        return std::nullopt;
    const auto harness = codingHarness(*text);
    if (!harness)
        throw StoredFormatError("no such harness");
    return harness;
}

} // namespace

std::string encoded(const TranscriptEntry& entry)
{
    nlohmann::ordered_json object;
    object["id"] = entry.id.text();
    object["text"] = entry.text;
    object["appName"] = entry.appName;
    if (entry.bundleIdentifier)
        object["bundleIdentifier"] = *entry.bundleIdentifier;
    object["createdAt"] = ReferenceDate::seconds(entry.createdAt);
    object["duration"] = entry.duration;
    if (entry.harness)
        object["harness"] = rawValue(*entry.harness);
    if (entry.rawText)
        object["rawText"] = *entry.rawText;
    constexpr int onOneLine = -1;
    return object.dump(onOneLine, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

TranscriptEntry decoded(std::string_view text)
{
    const auto object = StoredFields::parse(text);
    TranscriptEntry entry;
    const auto* const id = StoredFields::find(object, "id");
    if (!id)
        throw StoredFormatError("key \"id\" is absent");
    entry.id = StoredFields::uuid(*id);
    entry.text = StoredFields::string(object, "text");
    entry.appName = StoredFields::string(object, "appName");
    entry.bundleIdentifier = StoredFields::optionalString(object, "bundleIdentifier");
    entry.createdAt = ReferenceDate::date(StoredFields::number(object, "createdAt"));
    entry.duration = StoredFields::number(object, "duration");
    entry.harness = decodedHarness(object);
    entry.rawText = StoredFields::optionalString(object, "rawText");
    return entry;
}

} // namespace Sorvane::TranscriptCoding
