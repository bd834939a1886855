// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>

namespace Ostrel {

// What may be tuned about long recordings without changing the model.
struct Tunables {
    // Seconds before a window's end in which a cut is looked for; also how far two windows may overlap. 0 cuts
    // windows back to back. Beyond the window's length it is a programming fault.
    double boundarySearch = 3.0;

    // Windows that are encoded before the decoder runs on them, at least 1. More keeps the decoder's lanes
    // busier; each costs the memory of its projections (jointHidden x encFrames x 2 bytes).
    int64_t batchWindows = 64;

    // The process's own, read once from the environment: OSTREL_SEARCH and OSTREL_BATCH_WINDOWS.
    static const Tunables& process();

    // As process() reads them; either text may be null. One that is no number as a whole counts as absent.
    static Tunables parsed(const char* boundarySearch, const char* batchWindows);
};

} // namespace Ostrel
