// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <stdexcept>
#include <string>

namespace ModelStore {

// What can go wrong between a published model and its files on this disk.
class ModelStoreError : public std::runtime_error {
public:
    enum class Case {
        invalidResponse,
        unsupportedPlatform,
        localFileMissing,
        notInRepo,
        integrityCheckFailed,
        io,
        invalidSpec
    };

    static ModelStoreError invalidResponse(const std::string& text);
    static ModelStoreError unsupportedPlatform(const std::string& name);
    static ModelStoreError localFileMissing(const std::string& path);
    static ModelStoreError notInRepo(const std::string& text);
    static ModelStoreError integrityCheckFailed(const std::string& text);
    static ModelStoreError io(const std::string& text);
    static ModelStoreError invalidSpec();

    Case which() const noexcept { return which_; }
    std::string description() const { return what(); }

private:
    ModelStoreError(Case which, const std::string& text)
        : std::runtime_error(text)
        , which_(which)
    {
    }

    Case which_;
};

} // namespace ModelStore
