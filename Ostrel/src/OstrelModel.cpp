// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Ostrel/OstrelModel.h>

namespace Ostrel {

using ModelStore::ModelPlatform;

std::string OstrelModel::summary() const
{
    return "On-device speech recognition: transcripts with word-level timestamps, 25 languages.";
}

std::map<ModelPlatform, std::vector<std::string>> OstrelModel::files() const
{
    return { { ModelPlatform::apple,
        { "encoder.mlmodelc/", "mel.mlmodelc/", "decoder.mlmodelc/", "meta.json", "vocab.json", "embedding.f16" } } };
}

ModelCatalog::OSFloor OstrelModel::osFloor() const
{
    return { .iOS = 16, .macOS = 13, .tvOS = 16, .visionOS = 1, .watchOS = 9 };
}

std::string OstrelModel::artifact(ModelPlatform) const
{
    return encoder;
}

} // namespace Ostrel
