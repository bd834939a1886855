// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <Sorvane/CleanupFailure.h>

namespace Sorvane {

namespace {

const char* describe(CleanupFailure::Case which)
{
    switch (which) {
    case CleanupFailure::Case::unavailable:
        return "the cleanup model is not installed";
    case CleanupFailure::Case::invalidOutput:
        return "the cleanup model gave no usable result";
    case CleanupFailure::Case::processFailed:
        return "a cleanup tool failed or was stopped";
    case CleanupFailure::Case::inputTooLong:
        return "the text is too long for the cleanup model";
    }
    PlatformSupport::fatalError("no such cleanup failure");
}

} // namespace

CleanupFailure::CleanupFailure(Case which)
    : std::runtime_error(describe(which))
    , which_(which)
{
}

} // namespace Sorvane
