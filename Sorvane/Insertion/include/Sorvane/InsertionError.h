// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <array>
#include <stdexcept>
#include <string>

namespace Sorvane {

// Why text cannot go where the user is, or was, typing.
class InsertionError : public std::runtime_error {
public:
    enum class Case {
        permission, // other programs may not be read
        noField, // nothing that takes text has the focus
        secureField, // a password field has it
        unverifiedField, // a recording was begun without a field
        unavailableTarget, // the field is not what it was, or gone
        focusChanged, // the field does not get its focus back
        eventCreation, // there is no key to press
        clipboardWrite
    };

    static constexpr std::array allCases { Case::permission, Case::noField, Case::secureField, Case::unverifiedField,
        Case::unavailableTarget, Case::focusChanged, Case::eventCreation, Case::clipboardWrite };

    explicit InsertionError(Case which);

    Case which() const noexcept { return which_; }

    // What the user reads.
    std::string description() const { return what(); }

private:
    Case which_;
};

} // namespace Sorvane
