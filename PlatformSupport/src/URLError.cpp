// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <PlatformSupport/URLError.h>

#include <utility>

namespace PlatformSupport {

namespace {

const char* words(URLError::Code code)
{
    using Code = URLError::Code;
    switch (code) {
    case Code::badURL:
        return "The address is not valid.";
    case Code::unsupportedURL:
        return "The address is of a kind that is not supported.";
    case Code::cannotFindHost:
        return "The server could not be found.";
    case Code::cannotConnectToHost:
        return "The server could not be reached.";
    case Code::notConnectedToInternet:
        return "There is no connection to the internet.";
    case Code::networkConnectionLost:
        return "The connection to the server was lost.";
    case Code::timedOut:
        return "The server did not answer in time.";
    case Code::secureConnectionFailed:
        return "A secure connection to the server could not be made.";
    case Code::serverCertificateUntrusted:
        return "The server’s certificate is not trusted.";
    case Code::tooManyRedirects:
        return "The server sends the download from one address to the next without end.";
    case Code::insecureRedirect:
        return "The server wants to go on over a connection that is not secure.";
    case Code::badServerResponse:
        return "The server’s answer could not be used.";
    case Code::dataLengthExceedsMaximum:
        return "The server sent more than it should.";
    case Code::cannotWriteToFile:
        return "The download could not be saved.";
    case Code::cancelled:
        return "The transfer was ended.";
    }
    fatalError("a URL error without words");
}

} // namespace

URLError::URLError(Code code)
    : URLError(code, words(code))
{
}

URLError::URLError(Code code, std::string message)
    : code_(code)
    , message_(std::move(message))
{
}

URLError URLError::cannotWriteToFile(const std::string& reason)
{
    return { Code::cannotWriteToFile, "The download could not be saved: " + reason + "." };
}

} // namespace PlatformSupport
