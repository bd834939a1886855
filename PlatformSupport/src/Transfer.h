// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/HTTPResponse.h>
#include <PlatformSupport/Suspension.h>
#include <PlatformSupport/TemporaryFile.h>
#include <PlatformSupport/URLSession.h>

#include <curl/curl.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace PlatformSupport {

// One request from its address to its answer, over all redirects.
//
// The thread of its loop, but for its making, cancel(), and what stands after its end.
class Transfer {
public:
    using Clock = std::chrono::steady_clock;

    Transfer(URLRequest request, URLSessionOptions options);
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    // The body of a success goes to the file. Before the start.
    void writeTo(TemporaryFile file, std::optional<int64_t> largestSize, URLSession::DidWrite didWrite);

    // Who waits for the end. Before the start.
    void setWaiter(Resumer waiter) { waiter_.emplace(std::move(waiter)); }

    // Any thread; the loop, woken, then ends the transfer.
    void cancel() noexcept { isCancelled_ = true; }
    bool isCancelled() const noexcept { return isCancelled_; }

    CURL* handle() const noexcept { return handle_.get(); }
    static Transfer& of(CURL* handle);

    // Looks whether bytes have moved, and gives the time at which it has been silent for too long.
    Clock::time_point deadline(Clock::time_point now);

    // The connection's part is over. False if the transfer has to go on at another address, for which the handle is
    // then set up.
    bool conclude(CURLcode code);

    // It is over without an answer.
    void fail(std::exception_ptr error) noexcept;

    // Wakes who waits. The last call on the loop's thread.
    void finish();

    // After the end, by who waits. Errors: what the transfer failed with
    Downloaded takeDownloaded();
    HTTPResponse takeResponse();

private:
    struct HandleDeleter {
        void operator()(CURL* handle) const noexcept { ::curl_easy_cleanup(handle); }
    };
    struct ListDeleter {
        void operator()(curl_slist* list) const noexcept { ::curl_slist_free_all(list); }
    };

    void setUp();
    void setUpBody();
    void address(const std::string& url);
    static size_t receive(char* bytes, size_t size, size_t count, void* self);
    void take(std::string_view bytes);
    void takeIntoFile(std::string_view bytes);
    void takeIntoMemory(std::string_view bytes);
    bool follow();
    void readHeaders();
    template <typename T> T ask(CURLINFO what) const;

    URLRequest request_;
    URLSessionOptions options_;
    std::unique_ptr<CURL, HandleDeleter> handle_;
    std::unique_ptr<curl_slist, ListDeleter> headers_;
    std::optional<TemporaryFile> file_;
    std::optional<int64_t> largestSize_;
    URLSession::DidWrite didWrite_;
    int64_t received_ = 0; // bytes in the file
    int redirects_ = 0;
    int64_t moved_ = -1; // bytes of any kind, when last looked at
    Clock::time_point lastMove_;
    HTTPResponse response_;
    std::exception_ptr error_;
    std::optional<Resumer> waiter_;
    std::atomic<bool> isCancelled_ = false;
};

} // namespace PlatformSupport
