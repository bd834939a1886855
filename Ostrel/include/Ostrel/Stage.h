// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <MLProgram/MLFeatureProvider.h>
#include <MLProgram/MLModelDescription.h>

namespace Ostrel {

// A compiled model stage, as the engine uses it: it takes named 16-bit float tensors and writes named ones in
// place. Used by one thread at a time.
class Stage {
public:
    virtual ~Stage() = default;

    virtual const MLProgram::MLModelDescription& modelDescription() const = 0;

    // Runs the stage once. Every output that the engine reads has a backing in `options`.
    // Errors: whatever the runtime throws; the engine passes it on.
    virtual void predict(
        const MLProgram::MLDictionaryFeatureProvider& inputs, const MLProgram::MLPredictionOptions& options)
        = 0;
};

} // namespace Ostrel
