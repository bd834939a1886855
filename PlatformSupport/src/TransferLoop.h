// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Transfer.h"

#include <curl/curl.h>

#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace PlatformSupport {

// Runs transfers, on one thread of its own. Any thread may call it.
class TransferLoop {
public:
    TransferLoop();
    TransferLoop(const TransferLoop&) = delete;
    TransferLoop& operator=(const TransferLoop&) = delete;
    ~TransferLoop();

    // The transfer's waiter is woken at its end, which may come at once.
    void add(std::shared_ptr<Transfer> transfer);

    // Has the loop look after those that have been cancelled.
    void wake() noexcept;

    // Ends all transfers; those that come later end at once.
    void close();

private:
    struct MultiDeleter {
        void operator()(CURLM* multi) const noexcept { ::curl_multi_cleanup(multi); }
    };

    void run(const std::stop_token& stop);
    void takeArrivals();
    void takeFinished();
    int endSilentOnes(); // gives the milliseconds until the next could be
    void endCancelled();
    void end(CURL* handle, std::exception_ptr error);
    void end(Transfer& transfer);

    std::unique_ptr<CURLM, MultiDeleter> multi_;
    std::vector<std::shared_ptr<Transfer>> running_; // the loop's thread
    std::mutex lock_;
    std::vector<std::shared_ptr<Transfer>> arrivals_; // under `lock_`
    bool isClosed_ = false; // under `lock_`
    std::jthread thread_;
};

} // namespace PlatformSupport
