// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/ModelStoreError.h>

namespace ModelStore {

ModelStoreError ModelStoreError::invalidResponse(const std::string& text)
{
    return { Case::invalidResponse, text };
}

ModelStoreError ModelStoreError::unsupportedPlatform(const std::string& name)
{
    return { Case::unsupportedPlatform, "model does not support " + name };
}

ModelStoreError ModelStoreError::localFileMissing(const std::string& path)
{
    return { Case::localFileMissing, "required local model file is missing: " + path };
}

ModelStoreError ModelStoreError::notInRepo(const std::string& text)
{
    return { Case::notInRepo, text + " is not in the repo at that revision" };
}

ModelStoreError ModelStoreError::integrityCheckFailed(const std::string& text)
{
    return { Case::integrityCheckFailed, "integrity check failed for " + text };
}

ModelStoreError ModelStoreError::io(const std::string& text)
{
    return { Case::io, text };
}

ModelStoreError ModelStoreError::invalidSpec()
{
    return { Case::invalidSpec, "invalid model specification" };
}

} // namespace ModelStore
