// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/URLError.h>

#include <curl/curl.h>

namespace PlatformSupport {

// What the user is told of a transfer that ended so.
URLError urlError(CURLcode code, CURL* handle);

} // namespace PlatformSupport
