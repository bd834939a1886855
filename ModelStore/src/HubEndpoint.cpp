// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/HubEndpoint.h>
#include <PlatformSupport/Environment.h>

#include <algorithm>
#include <array>

namespace ModelStore {

std::string hubEndpoint()
{
    std::string endpoint = PlatformSupport::environmentVariable("TRW_HUB_ENDPOINT").value_or("");
    while (endpoint.ends_with('/'))
        endpoint.pop_back();
    return endpoint.empty() ? "https://huggingface.co" : endpoint;
}

bool isTrustedOrigin(std::string_view origin)
{
    constexpr std::string_view plain = "http://";
    if (origin.starts_with("https://"))
        return true;
    if (!origin.starts_with(plain))
        return false;
    const std::string_view host = origin.substr(plain.size());
    constexpr std::array<std::string_view, 3> loopback { "127.0.0.1", "localhost", "[::1]" };
    return std::ranges::any_of(loopback, [&](std::string_view name) {
        const std::string_view rest = host.substr(std::min(name.size(), host.size()));
        return host.starts_with(name) && (rest.empty() || rest.starts_with(':') || rest.starts_with('/'))
            && rest.find('@') == std::string_view::npos;
    });
}

} // namespace ModelStore
