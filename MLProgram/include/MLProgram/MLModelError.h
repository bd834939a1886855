// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <stdexcept>
#include <string>

namespace MLProgram {

// What can go wrong with a compiled model stage. description() says it in one sentence, with the bundle's
// or the feature's name in it.
class MLModelError : public std::runtime_error {
public:
    enum class Case {
        io, // a file of the bundle cannot be read
        invalidProgram, // the bundle's bytes do not form a sound program
        unsupported, // sound, but with an operation or type that this runtime does not have
        invalidFeature, // a prediction was given a missing, unknown or ill-shaped feature
        outOfMemory // a tensor could not be allocated
    };

    MLModelError(Case which, const std::string& text)
        : std::runtime_error(text)
        , which_(which)
    {
    }

    Case which() const noexcept { return which_; }
    std::string description() const { return what(); }

private:
    Case which_;
};

} // namespace MLProgram
