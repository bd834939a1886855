// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/UserDefaults.h>

#include <nlohmann/json.hpp>

#include <filesystem>
#include <optional>
#include <string>

namespace PlatformSupport {

// Settings in a file of their own: one JSON object, written as a whole at each change and readable by the user alone.
// What it holds besides, of whatever type, is kept.
//
// A setting counts even where it cannot be written, until the program ends; writeError() then tells why. A file that
// cannot be read counts as empty, and is set aside under its name and ".damaged" before it is written over.
//
// Main thread; a change takes the time of a small write.
class FileUserDefaults final : public UserDefaults {
public:
    explicit FileUserDefaults(std::filesystem::path path);

    bool contains(std::string_view name) const override;
    std::optional<bool> boolean(std::string_view name) const override;
    std::optional<std::string> string(std::string_view name) const override;
    void setBoolean(std::string_view name, bool value) override;
    void setString(std::string_view name, std::string_view value) override;

    // Why the last change is not on the disk; nothing if it is.
    const std::optional<std::string>& writeError() const { return writeError_; }

private:
    template <typename T> std::optional<T> value(std::string_view name) const;
    void set(std::string_view name, nlohmann::json value);
    void read();
    void write();

    std::filesystem::path path_;
    nlohmann::json values_ = nlohmann::json::object();
    bool isDamaged_ = false;
    std::optional<std::string> writeError_;
};

} // namespace PlatformSupport
