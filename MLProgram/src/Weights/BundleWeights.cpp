// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Weights/BundleWeights.h"

#include "Weights/BundleFile.h"

#include <MLProgram/MLModelError.h>

#include <sys/mman.h>

#include <algorithm>
#include <span>
#include <utility>

namespace MLProgram {
namespace {

constexpr std::string_view bundlePrefix = "@model_path/";

// What stands behind the prefix: names, and neither a root nor "..".
std::filesystem::path pathInBundle(std::string_view path)
{
    const std::filesystem::path relative(path.substr(std::min(bundlePrefix.size(), path.size())));
    const bool leadsOut = relative.empty() || relative.has_root_path()
        || std::any_of(relative.begin(), relative.end(), [](const auto& part) { return part == ".."; })
        || path.find('\0') != std::string_view::npos;
    if (!path.starts_with(bundlePrefix) || leadsOut)
        throw MLModelError(MLModelError::Case::invalidProgram,
            "the path \"" + std::string(path) + "\" does not lead to a file of the bundle");
    return relative;
}

// All of the file will be read soon: a disk reads it faster in one go than page by page.
void readAhead(std::span<const std::byte> file)
{
    if (!file.empty())
        madvise(const_cast<std::byte*>(file.data()), file.size(), MADV_WILLNEED);
}

} // namespace

BundleWeights::BundleWeights(std::filesystem::path bundle)
    : bundle_(std::move(bundle))
{
}

Constant BundleWeights::read(std::string_view path, uint64_t offset, ScalarType type, const Shape& shape)
{
    return file(path).read(offset, type, shape);
}

const WeightFile& BundleWeights::file(std::string_view path)
{
    const auto found = files_.find(path);
    if (found != files_.end())
        return found->second;
    const std::filesystem::path relative = pathInBundle(path);
    const auto mapped = mapBundleFile(bundle_, relative);
    readAhead(mapped->bytes());
    return files_.emplace(path, WeightFile(relative.string(), mapped->bytes(), mapped)).first->second;
}

} // namespace MLProgram
