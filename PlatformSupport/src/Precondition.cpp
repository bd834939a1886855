// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>

#include <cstdio>
#include <cstdlib>

namespace PlatformSupport {

void fatalError(std::string_view message, std::source_location where)
{
    std::fprintf(stderr, "Fatal error: %.*s (%s:%u)\n", static_cast<int>(message.size()), message.data(),
        where.file_name(), static_cast<unsigned>(where.line()));
    std::abort();
}

} // namespace PlatformSupport
