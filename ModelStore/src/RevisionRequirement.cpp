// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/RevisionRequirement.h>
#include <ModelStore/SemanticVersion.h>

#include <algorithm>
#include <utility>

namespace ModelStore {

namespace {

std::optional<std::string> greatestFrom(const SemanticVersion& minimum, const std::vector<std::string>& candidates)
{
    const std::string* best = nullptr;
    SemanticVersion bestVersion;
    for (const std::string& candidate : candidates) {
        const std::optional<SemanticVersion> version = SemanticVersion::parse(candidate);
        if (!version || version->major != minimum.major || *version < minimum)
            continue;
        if (best == nullptr || bestVersion < *version) {
            best = &candidate;
            bestVersion = *version;
        }
    }
    return best == nullptr ? std::nullopt : std::optional(*best);
}

} // namespace

RevisionRequirement::RevisionRequirement(Kind kind, std::string text)
    : kind_(kind)
    , text_(std::move(text))
{
}

RevisionRequirement RevisionRequirement::exact(std::string revision)
{
    return { Kind::exact, std::move(revision) };
}

RevisionRequirement RevisionRequirement::from(std::string minimum)
{
    return { Kind::from, std::move(minimum) };
}

std::optional<std::string> RevisionRequirement::exactRevision() const
{
    return kind_ == Kind::exact ? std::optional(text_) : std::nullopt;
}

std::optional<std::string> RevisionRequirement::bestMatch(const std::vector<std::string>& candidates) const
{
    if (kind_ == Kind::exact)
        return std::ranges::find(candidates, text_) == candidates.end() ? std::nullopt : std::optional(text_);
    const std::optional<SemanticVersion> minimum = SemanticVersion::parse(text_);
    return minimum ? greatestFrom(*minimum, candidates) : std::nullopt;
}

} // namespace ModelStore
