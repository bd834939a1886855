// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace TestSupport {

// While it lives, no file can grow beyond so many bytes: a full disk, for the superuser, too.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
        : signal_(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit { bytes, before_.rlim_max };
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signal_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*signal_)(int);
    rlimit before_ {};
};

} // namespace TestSupport
