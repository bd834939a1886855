// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Transfer.h"

#include "CurlErrors.h"

#include <PlatformSupport/Environment.h>
#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace PlatformSupport {

namespace {

// As many as browsers follow.
constexpr int mostRedirects = 20;

// Of what is taken from a connection at once; the default of 16 KiB costs a tenth of the speed.
constexpr long bufferSize = 262'144;

template <typename T> void set(CURL* handle, CURLoption option, T value)
{
    precondition(::curl_easy_setopt(handle, option, value) == CURLE_OK, "an option of the HTTP library is missing");
}

// The environment's exceptions, and this computer itself.
std::string hostsWithoutProxy()
{
    const auto lower = environmentVariable("no_proxy");
    const std::string hosts = lower ? *lower : environmentVariable("NO_PROXY").value_or("");
    return hosts == "*" ? hosts : hosts + ",localhost,127.0.0.1,::1";
}

bool isRedirect(int64_t status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

} // namespace

Transfer::Transfer(URLRequest request, URLSessionOptions options)
    : request_(std::move(request))
    , options_(std::move(options))
    , handle_(::curl_easy_init())
    , lastMove_(Clock::now())
{
    precondition(handle_ != nullptr, "the HTTP library gives no handle");
    setUp();
}

Transfer& Transfer::of(CURL* handle)
{
    char* self = nullptr;
    ::curl_easy_getinfo(handle, CURLINFO_PRIVATE, &self);
    return *reinterpret_cast<Transfer*>(self);
}

void Transfer::setUp()
{
    CURL* const handle = handle_.get();
    set(handle, CURLOPT_PRIVATE, this);
    set(handle, CURLOPT_WRITEDATA, this);
    set(handle, CURLOPT_WRITEFUNCTION, &Transfer::receive);
    set(handle, CURLOPT_BUFFERSIZE, bufferSize);
    set(handle, CURLOPT_NOSIGNAL, 1L);
    set(handle, CURLOPT_QUICK_EXIT, 1L); // a name that is still being looked up holds up no cancellation
    set(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    set(handle, CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
    set(handle, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(handle, CURLOPT_NOPROXY, hostsWithoutProxy().c_str());
    if (options_.certificates)
        set(handle, CURLOPT_CAINFO, options_.certificates->c_str());
    setUpBody();
    address(request_.url);
}

void Transfer::setUpBody()
{
    CURL* const handle = handle_.get();
    const auto addHeader
        = [this](const std::string& line) { headers_.reset(::curl_slist_append(headers_.release(), line.c_str())); };
    if (request_.body) {
        set(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body->size()));
        set(handle, CURLOPT_POSTFIELDS, request_.body->c_str());
        addHeader("Expect:"); // nothing is waited for before the body is sent
    }
    if (request_.method == "HEAD")
        set(handle, CURLOPT_NOBODY, 1L);
    set(handle, CURLOPT_CUSTOMREQUEST, request_.method.c_str());
    addHeader("Content-Type:" + (request_.contentType ? " " + *request_.contentType : ""));
    set(handle, CURLOPT_HTTPHEADER, headers_.get());
}

void Transfer::address(const std::string& url)
{
    request_.url = url;
    set(handle_.get(), CURLOPT_URL, url.c_str());
}

void Transfer::writeTo(TemporaryFile file, std::optional<int64_t> largestSize, URLSession::DidWrite didWrite)
{
    file_.emplace(std::move(file));
    largestSize_ = largestSize;
    didWrite_ = std::move(didWrite);
}

template <typename T> T Transfer::ask(CURLINFO what) const
{
    T value {};
    ::curl_easy_getinfo(handle_.get(), what, &value);
    return value;
}

Transfer::Clock::time_point Transfer::deadline(Clock::time_point now)
{
    const int64_t moved = ask<curl_off_t>(CURLINFO_SIZE_DOWNLOAD_T) + ask<curl_off_t>(CURLINFO_SIZE_UPLOAD_T)
        + ask<long>(CURLINFO_HEADER_SIZE) + ask<long>(CURLINFO_REQUEST_SIZE);
    if (std::exchange(moved_, moved) != moved)
        lastMove_ = now;
    return lastMove_ + options_.inactivityLimit;
}

size_t Transfer::receive(char* bytes, size_t size, size_t count, void* self)
{
    Transfer& transfer = *static_cast<Transfer*>(self);
    try {
        transfer.take({ bytes, size * count });
        return size * count;
    } catch (...) { // it goes on from conclude(), on this side of the library
        transfer.error_ = std::current_exception();
        return CURL_WRITEFUNC_ERROR;
    }
}

void Transfer::take(std::string_view bytes)
{
    const auto status = ask<long>(CURLINFO_RESPONSE_CODE);
    if (file_ && status >= 200 && status <= 299)
        takeIntoFile(bytes);
    else
        takeIntoMemory(bytes);
}

void Transfer::takeIntoFile(std::string_view bytes)
{
    const auto expected = ask<curl_off_t>(CURLINFO_CONTENT_LENGTH_DOWNLOAD_T);
    const int64_t total = received_ + static_cast<int64_t>(bytes.size());
    if (largestSize_ && std::max(total, expected) > *largestSize_)
        throw DataLengthError(std::max(total, expected));
    try {
        file_->write(bytes);
    } catch (const std::filesystem::filesystem_error& error) {
        throw URLError::cannotWriteToFile(error.code().message());
    }
    received_ = total;
    if (didWrite_)
        didWrite_(received_, expected);
}

void Transfer::takeIntoMemory(std::string_view bytes)
{
    const size_t total = response_.body.size() + bytes.size();
    if (total > options_.largestBody)
        throw DataLengthError(static_cast<int64_t>(total));
    response_.body += bytes;
}

bool Transfer::conclude(CURLcode code)
{
    if (error_)
        return true;
    try {
        if (code != CURLE_OK)
            throw urlError(code, handle_.get());
        response_.status = ask<long>(CURLINFO_RESPONSE_CODE);
        if (isRedirect(response_.status) && follow())
            return false;
        readHeaders();
    } catch (...) {
        fail(std::current_exception());
    }
    return true;
}

// False if the answer does not say where to.
bool Transfer::follow()
{
    const char* const next = ask<const char*>(CURLINFO_REDIRECT_URL);
    if (next == nullptr)
        return false;
    if (++redirects_ > mostRedirects)
        throw URLError(URLError::Code::tooManyRedirects);
    const auto isSecure = [](std::string_view url) { return url.starts_with("https:"); };
    if (isSecure(ask<const char*>(CURLINFO_EFFECTIVE_URL)) && !isSecure(next))
        throw URLError(URLError::Code::insecureRedirect);
    if (response_.status != 307 && response_.status != 308 && request_.method != "GET" && request_.method != "HEAD") {
        request_.method = "GET";
        request_.body.reset();
        request_.contentType.reset();
        headers_.reset();
        set(handle_.get(), CURLOPT_HTTPGET, 1L);
        setUpBody();
    }
    response_ = {};
    address(next);
    return true;
}

void Transfer::readHeaders()
{
    constexpr int lastResponse = -1;
    const curl_header* header = nullptr;
    while ((header = ::curl_easy_nextheader(handle_.get(), CURLH_HEADER, lastResponse,
                const_cast<curl_header*>(header))) // the interface is not const
        != nullptr)
        response_.headers.push_back({ .name = header->name, .value = header->value });
}

void Transfer::fail(std::exception_ptr error) noexcept
{
    error_ = std::move(error);
}

void Transfer::finish()
{
    if (error_)
        file_.reset();
    didWrite_ = nullptr;
    const Resumer waiter = std::move(*waiter_);
    waiter_.reset();
    waiter.resume();
}

Downloaded Transfer::takeDownloaded()
{
    HTTPResponse response = takeResponse();
    return { .response = std::move(response), .file = std::move(*file_) };
}

HTTPResponse Transfer::takeResponse()
{
    if (error_)
        std::rethrow_exception(error_);
    return std::move(response_);
}

} // namespace PlatformSupport
