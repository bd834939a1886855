// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakeAccessibility.h>

#include <algorithm>

namespace DesktopFakes {

std::vector<std::string> FakeAccessibility::changes() const
{
    std::vector<std::string> changes;
    for (const auto& call : calls)
        if (call.what.starts_with("write ") || call.what.starts_with("perform "))
            changes.push_back(call.what);
    return changes;
}

size_t FakeAccessibility::readsOf(std::string_view attribute) const
{
    const auto isSuchARead = [what = "read " + std::string(attribute)](const auto& call) { return call.what == what; };
    return static_cast<size_t>(std::count_if(calls.begin(), calls.end(), isSuchARead));
}

} // namespace DesktopFakes
