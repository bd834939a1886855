// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string>
#include <string_view>

namespace ModelStore {

// The hub's origin, without a slash at its end: what the environment variable TRW_HUB_ENDPOINT says, else the public
// one. Whether it may be used, isTrustedOrigin() tells.
std::string hubEndpoint();

// Origins that models may come from: any over https; over http only this computer itself.
bool isTrustedOrigin(std::string_view origin);

} // namespace ModelStore
