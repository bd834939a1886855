// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/ModelPlatform.h>
#include <PlatformSupport/Precondition.h>

namespace ModelStore {

std::string_view rawValue(ModelPlatform platform)
{
    switch (platform) {
    case ModelPlatform::apple:
        return "apple";
    case ModelPlatform::android:
        return "android";
    case ModelPlatform::linux:
        return "linux";
    case ModelPlatform::windows:
        return "windows";
    case ModelPlatform::web:
        return "web";
    }
    PlatformSupport::fatalError("unknown model platform");
}

std::optional<ModelPlatform> modelPlatform(std::string_view text)
{
    for (const ModelPlatform platform : allModelPlatforms)
        if (rawValue(platform) == text)
            return platform;
    return {};
}

} // namespace ModelStore
