// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace Sorvane {

// What was downloaded for the text cleanup cannot be used. The words are for the user.
class InstallationError : public std::runtime_error {
public:
    enum class Case {
        checksum, // a download has another size or digest than it must have
        runtime, // the archive does not hold the tools, or holds what no archive of ours does
    };

    explicit InstallationError(Case which);

    Case which() const noexcept { return which_; }
    std::string description() const { return what(); }

private:
    Case which_;
};

// A download would not fit on the disk.
class DiskSpaceError : public std::runtime_error {
public:
    DiskSpaceError(uint64_t neededBytes, uint64_t freeBytes);
    std::string description() const { return what(); }
};

} // namespace Sorvane
