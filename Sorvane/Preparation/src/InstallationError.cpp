// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <Sorvane/InstallationError.h>

namespace Sorvane {

namespace {

const char* describe(InstallationError::Case which)
{
    switch (which) {
    case InstallationError::Case::checksum:
        return "The download could not be verified. Please retry.";
    case InstallationError::Case::runtime:
        return "The downloaded runtime is incomplete. Please retry.";
    }
    PlatformSupport::fatalError("no such installation error");
}

// Rounded up for what is needed, down for what there is, so that the words never contradict themselves.
enum class Rounding { up, down };

std::string megabytes(uint64_t bytes, Rounding rounding)
{
    constexpr uint64_t megabyte = 1'000'000;
    const bool addsOne = rounding == Rounding::up && bytes % megabyte != 0;
    return std::to_string(bytes / megabyte + (addsOne ? 1 : 0)) + " MB";
}

} // namespace

InstallationError::InstallationError(Case which)
    : std::runtime_error(describe(which))
    , which_(which)
{
}

DiskSpaceError::DiskSpaceError(uint64_t neededBytes, uint64_t freeBytes)
    : std::runtime_error("There is not enough space for the download: it needs " + megabytes(neededBytes, Rounding::up)
        + ", and " + megabytes(freeBytes, Rounding::down) + " are free.")
{
}

} // namespace Sorvane
