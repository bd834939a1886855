// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <filesystem>
#include <string>

namespace Sorvane {

// Whether an archive that was unpacked in `staging` brought the one folder of that name and nothing beside it, with
// nothing in it but files, folders and links that lead to somewhere within the folder. What tar strips from names that
// would have led out of the staging directory shows as a stranger beside the folder.
bool holdsOnlyFolder(const std::filesystem::path& staging, const std::string& folder);

} // namespace Sorvane
