// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "HubListing.h"

#include <ModelStore/DecodingError.h>
#include <ModelStore/ModelStore.h>
#include <ModelStore/ModelStoreError.h>
#include <ModelStore/Paths.h>
#include <PlatformSupport/Precondition.h>

#include <cstddef>
#include <cstdint>

using namespace ModelStore;

namespace {

// Nothing that is taken from a tree leads out of the model's directory.
void choose(std::string_view json)
{
    for (const RemoteEntry& entry : ::ModelStore::ModelStore::resolve({ "weights/" }, decodeTree(json), "owner/name"))
        PlatformSupport::precondition(isSafeRelativePath(entry.path) && entry.size >= 0, "an unsafe entry is taken");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view json(reinterpret_cast<const char*>(data), size);
    try {
        choose(json);
    } catch (const DecodingError&) { // refused, as it should be
    } catch (const ModelStoreError&) {
    }
    try {
        decodeTags(json);
    } catch (const DecodingError&) {
    }
    return 0;
}
