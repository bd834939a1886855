// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Weights/BundleFile.h"

#include <MLProgram/MLModelError.h>

namespace MLProgram {

std::shared_ptr<const PlatformSupport::MappedFile> mapBundleFile(
    const std::filesystem::path& bundle, const std::filesystem::path& name)
{
    try {
        return std::make_shared<PlatformSupport::MappedFile>(bundle / name);
    } catch (const std::filesystem::filesystem_error& error) {
        throw MLModelError(MLModelError::Case::io, name.string() + " cannot be read: " + error.code().message());
    }
}

std::string_view textOf(const PlatformSupport::MappedFile& file) noexcept
{
    return { reinterpret_cast<const char*>(file.bytes().data()), file.bytes().size() };
}

} // namespace MLProgram
