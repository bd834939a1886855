// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/MessageError.h>

#include <cstdint>
#include <string>

namespace Sorvane {

// Some of the transcripts that were to be deleted are still there.
class HistoryDeletionError : public PlatformSupport::MessageError {
public:
    HistoryDeletionError(int64_t failed, int64_t removed);

    int64_t failed() const noexcept { return failed_; }
    int64_t removed() const noexcept { return removed_; }

    // "Removed 1 transcript(s). 2 could not be deleted and remain selected."
    std::string message() const override { return message_; }
    const char* what() const noexcept override { return message_.c_str(); }

private:
    int64_t failed_;
    int64_t removed_;
    std::string message_;
};

} // namespace Sorvane
