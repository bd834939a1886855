// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelCatalog/ModelLoadProgress.h>

#include <algorithm>

namespace ModelCatalog {

ModelLoadProgress ModelLoadProgress::of(double fraction)
{
    if (fraction < filesShare)
        return { .phase = ModelLoadPhase::downloading, .fraction = ofFiles(fraction) };
    return { .phase = ModelLoadPhase::preparing, .fraction = std::min(2 * (fraction - filesShare), 1.0) };
}

double ModelLoadProgress::ofFiles(double fraction)
{
    return fraction < filesShare ? std::min(2 * fraction, 1.0) : 1.0;
}

} // namespace ModelCatalog
