// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Pieces.h"

#include <ModelStore/RevisionRequirement.h>
#include <ModelStore/SemanticVersion.h>
#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

using namespace ModelStore;

// The first line is the minimum, the others are a hub's tags.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const auto lines = piecesOf({ reinterpret_cast<const char*>(data), size }, '\n');
    const std::string minimum(lines.front());
    const std::vector<std::string> tags(lines.begin() + 1, lines.end());
    const std::optional<std::string> best = RevisionRequirement::from(minimum).bestMatch(tags);
    if (!best)
        return 0;
    const auto version = SemanticVersion::parse(*best);
    const auto least = SemanticVersion::parse(minimum);
    PlatformSupport::precondition(std::ranges::find(tags, *best) != tags.end(), "a tag is chosen that is not there");
    PlatformSupport::precondition(
        *version >= *least && version->major == least->major, "a tag is chosen that will not do");
    return 0;
}
