// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "StatisticsCoding.h"
#include "StoredFields.h"

#include <PlatformSupport/Precondition.h>

#include <cstddef>
#include <cstdint>
#include <string>

using namespace Sorvane;

// What can be read can be written, and is then read as the same.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    try {
        const auto statistics = decodedStatistics({ reinterpret_cast<const char*>(data), size });
        statistics.summary();
        statistics.activity();
        StatisticsText text;
        text.update(statistics, {});
        std::string whole;
        for (const auto piece : text.pieces())
            whole += piece;
        PlatformSupport::precondition(decodedStatistics(whole).items() == statistics.items(),
            "the statistics changed on their way through their file");
    } catch (const StoredFormatError&) { // refused, as it should be
    }
    return 0;
}
