// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/RemoteEntry.h>

#include <string>
#include <string_view>
#include <vector>

namespace ModelStore {

// What the hub lists, out of its JSON. Fields that are not read may be anything.
//
// Errors: DecodingError

// The files of a repository: an array of { "type", "path", "size", perhaps "lfs": { "oid" } }. Every element has to be
// sound, but only those of the type "file" are given.
std::vector<RemoteEntry> decodeTree(std::string_view json);

// The names of tags: { perhaps "tags": [ { "name" } ] }.
std::vector<std::string> decodeTags(std::string_view json);

} // namespace ModelStore
