// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelCatalog/ModelDeclaration.h>

namespace Ostrel {

// The speech model as it is published.
class OstrelModel final : public ModelCatalog::ModelDeclaration {
public:
    static constexpr const char* mel = "mel.mlmodelc";
    static constexpr const char* encoder = "encoder.mlmodelc";
    static constexpr const char* decodeStep = "decoder.mlmodelc";

    std::string id() const override { return "ostrel"; }
    std::string product() const override { return "Ostrel"; }
    std::string revision() const override { return "v0.1.0"; }
    std::string sdkVersion() const override { return "3.1.0"; }
    std::string summary() const override;
    std::map<ModelStore::ModelPlatform, std::vector<std::string>> files() const override;
    ModelCatalog::OSFloor osFloor() const override;
    std::string artifact(ModelStore::ModelPlatform platform) const override;
};

} // namespace Ostrel
