// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ModelStore {

// Which revisions of a model will do: one and nothing else, or any version from a minimum on that has the same major
// number. A higher major number is another contract between a model and the code that runs it, and is never taken.
class RevisionRequirement {
public:
    static RevisionRequirement exact(std::string revision);
    static RevisionRequirement from(std::string minimum); // "1.2.0"

    bool operator==(const RevisionRequirement&) const = default;

    // Nothing unless it is an exact one.
    std::optional<std::string> exactRevision() const;

    // The revision, or the minimum, as it was given.
    const std::string& text() const noexcept { return text_; }

    // The greatest of the candidates that will do, as it is written there; of equal ones the first. Candidates that are
    // no versions, such as branches, are passed over.
    //
    // Example: from("1.2.0") picks "1.3" of "1.1.9", "v1.2.0", "1.3", "2.0.0", "main".
    std::optional<std::string> bestMatch(const std::vector<std::string>& candidates) const;

private:
    enum class Kind { exact, from };

    RevisionRequirement(Kind kind, std::string text);

    Kind kind_;
    std::string text_;
};

} // namespace ModelStore
