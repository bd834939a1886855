// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CurlErrors.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <cerrno>

namespace PlatformSupport {

namespace {

bool leadsOut(const ifaddrs& interface)
{
    constexpr unsigned wanted = IFF_UP | IFF_RUNNING;
    return (interface.ifa_flags & wanted) == wanted && (interface.ifa_flags & IFF_LOOPBACK) == 0
        && interface.ifa_addr != nullptr
        && (interface.ifa_addr->sa_family == AF_INET || interface.ifa_addr->sa_family == AF_INET6);
}

// Whether any network is connected but the computer's own.
bool hasNetwork()
{
    ifaddrs* interfaces = nullptr;
    if (::getifaddrs(&interfaces) != 0)
        return true; // not known: then the server is to blame
    bool found = false;
    for (const ifaddrs* interface = interfaces; interface != nullptr && !found; interface = interface->ifa_next)
        found = leadsOut(*interface);
    ::freeifaddrs(interfaces);
    return found;
}

bool isUnreachable(CURL* handle)
{
    long error = 0;
    ::curl_easy_getinfo(handle, CURLINFO_OS_ERRNO, &error);
    return error == ENETUNREACH || error == ENETDOWN;
}

} // namespace

URLError urlError(CURLcode code, CURL* handle)
{
    using Code = URLError::Code;
    switch (code) {
    case CURLE_URL_MALFORMAT:
    case CURLE_LOGIN_DENIED: // a user's name in the address
        return URLError(Code::badURL);
    case CURLE_UNSUPPORTED_PROTOCOL:
        return URLError(Code::unsupportedURL);
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return URLError(hasNetwork() ? Code::cannotFindHost : Code::notConnectedToInternet);
    case CURLE_COULDNT_CONNECT:
    case CURLE_PROXY:
        return URLError(isUnreachable(handle) ? Code::notConnectedToInternet : Code::cannotConnectToHost);
    case CURLE_OPERATION_TIMEDOUT:
        return URLError(Code::timedOut);
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
        return URLError(Code::serverCertificateUntrusted);
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CERTPROBLEM:
        return URLError(Code::secureConnectionFailed);
    case CURLE_GOT_NOTHING:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_PARTIAL_FILE:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
        return URLError(Code::networkConnectionLost);
    default:
        return URLError(Code::badServerResponse);
    }
}

} // namespace PlatformSupport
