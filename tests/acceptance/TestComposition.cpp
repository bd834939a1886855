// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TestComposition.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>

namespace Acceptance {

namespace {

Sorvane::DownloadAsset asset(const nlohmann::json& pin)
{
    return { .url = pin["url"], .bytes = pin["bytes"], .sha256 = pin["sha256"] };
}

} // namespace

Sorvane::Composition testComposition()
{
    std::ifstream file(std::getenv("TEST_PINS"));
    const auto pins = nlohmann::json::parse(file);
    const Sorvane::CleanupAssets assets {
        .weights = asset(pins["weights"]), .runtime = asset(pins["runtime"]), .runtimeVersion = pins["version"]
    };
    return { .version = "with other pins", .cleanupAssets = [assets] { return assets; } };
}

} // namespace Acceptance
