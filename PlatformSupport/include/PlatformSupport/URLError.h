// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/MessageError.h>

#include <cstdint>
#include <string>

namespace PlatformSupport {

// What can go wrong between this computer and a server, in words for the user.
class URLError : public MessageError {
public:
    enum class Code {
        badURL,
        unsupportedURL, // neither http nor https
        cannotFindHost,
        cannotConnectToHost,
        notConnectedToInternet,
        networkConnectionLost,
        timedOut,
        secureConnectionFailed,
        serverCertificateUntrusted,
        tooManyRedirects,
        insecureRedirect, // from https to http
        badServerResponse,
        dataLengthExceedsMaximum,
        cannotWriteToFile,
        cancelled, // the session ended; a task that is cancelled ends in a CancellationError
    };

    explicit URLError(Code code);

    // Adds what the system says.
    static URLError cannotWriteToFile(const std::string& reason);

    Code code() const noexcept { return code_; }
    std::string message() const override { return message_; }
    const char* what() const noexcept override { return message_.c_str(); }

private:
    URLError(Code code, std::string message);

    Code code_;
    std::string message_;
};

// A server sends more than it may.
class DataLengthError : public URLError {
public:
    explicit DataLengthError(int64_t bytes)
        : URLError(Code::dataLengthExceedsMaximum)
        , bytes_(bytes)
    {
    }

    // As many as it announced; if it announced none, as many as came before it was cut off.
    int64_t bytes() const noexcept { return bytes_; }

private:
    int64_t bytes_;
};

} // namespace PlatformSupport
