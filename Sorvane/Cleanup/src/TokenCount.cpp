// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TokenCount.h"

#include <Regex/Trimming.h>
#include <Sorvane/CleanupFailure.h>

#include <nlohmann/json.hpp>

#include <algorithm>

namespace Sorvane {

size_t tokenCount(std::string_view output)
{
    using Json = nlohmann::json;
    const auto ids = Json::parse(Regex::trimmed(output), nullptr, false);
    if (!ids.is_array() || !std::ranges::all_of(ids, [](const Json& id) { return id.is_number_integer(); }))
        throw CleanupFailure(CleanupFailure::Case::invalidOutput);
    return ids.size();
}

} // namespace Sorvane
