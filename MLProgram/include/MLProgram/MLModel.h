// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <MLProgram/MLFeatureProvider.h>
#include <MLProgram/MLModelConfiguration.h>
#include <MLProgram/MLModelDescription.h>

#include <filesystem>
#include <memory>

namespace MLProgram {

// A compiled model stage (a *.mlmodelc directory), loaded and ready to run.
//
// Loading parses the program, checks every offset, size and shape against the files, and compiles it to a
// plan: constants folded, weights packed once, buffers planned. The bundle's files are mapped and must not
// change while the model lives.
//
// A model is used by one thread at a time; a prediction works in buffers of the model's own.
class MLModel {
public:
    // Errors: MLModelError (io) a file is missing or unreadable; (invalidProgram) the bundle is malformed;
    //         (unsupported) it uses operations this runtime does not have: all of them are named.
    explicit MLModel(const std::filesystem::path& bundle, const MLModelConfiguration& configuration = {});
    ~MLModel();
    MLModel(MLModel&&) noexcept;
    MLModel& operator=(MLModel&&) noexcept;

    const MLModelDescription& modelDescription() const noexcept;

    // Runs the stage once. Outputs with a backing in `options` are written there, others into new arrays; the
    // result names all of them. With every output bound and the shapes of an earlier call, nothing is allocated.
    //
    // Errors: MLModelError (invalidFeature) for an input that is missing or whose shape is not allowed, or a
    //         backing of the wrong shape or type. The outputs' contents are then unspecified.
    MLDictionaryFeatureProvider prediction(
        const MLDictionaryFeatureProvider& inputs, const MLPredictionOptions& options = {});

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace MLProgram
