// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

namespace ModelCatalog {

enum class ModelLoadPhase { downloading, preparing };

// How far a model is on its way into memory.
struct ModelLoadProgress {
    ModelLoadPhase phase = ModelLoadPhase::downloading;
    double fraction = 0; // of the phase, 0 to 1

    bool operator==(const ModelLoadProgress&) const = default;

    // The files' share of one load.
    static constexpr double filesShare = 0.5;

    // What a fraction of one load means: the first half is the files', the second the preparation's.
    static ModelLoadProgress of(double fraction);

    // How far the files are then.
    static double ofFiles(double fraction);
};

} // namespace ModelCatalog
