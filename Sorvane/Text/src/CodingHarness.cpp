// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <Sorvane/CodingHarness.h>
#include <Sorvane/RawValue.h>

namespace Sorvane {

std::string_view rawValue(CodingHarness harness)
{
    switch (harness) {
    case CodingHarness::claudeCode:
        return "Claude Code";
    case CodingHarness::codex:
        return "Codex";
    }
    PlatformSupport::fatalError("no such coding harness");
}

std::optional<CodingHarness> codingHarness(std::string_view rawValue)
{
    return caseWithRawValue(allCodingHarnesses, rawValue);
}

} // namespace Sorvane
