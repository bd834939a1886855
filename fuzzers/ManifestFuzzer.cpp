// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/Manifest.h>
#include <PlatformSupport/Precondition.h>

#include <cstddef>
#include <cstdint>

using namespace ModelStore;

// What is read as a manifest is the same one after it has been written again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (const std::optional<Manifest> manifest = Manifest::parse({ data, data + size }))
        PlatformSupport::precondition(
            Manifest::parse(manifest->serialized()) == manifest, "a manifest changes when it is written");
    return 0;
}
