// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <stdexcept>
#include <string>

namespace Ostrel {

// What can go wrong in the engine itself. Errors of files, of the model runtime and of JSON are passed on as
// they are.
class OstrelError : public std::runtime_error {
public:
    enum class Case { invalidModel, invalidAudio, unsupportedPlatform };

    static OstrelError invalidModel(const std::string& what);
    static OstrelError invalidAudio(const std::string& what);
    static OstrelError unsupportedPlatform();

    Case which() const noexcept { return which_; }
    std::string description() const { return what(); }

private:
    OstrelError(Case which, const std::string& text)
        : std::runtime_error(text)
        , which_(which)
    {
    }

    Case which_;
};

} // namespace Ostrel
