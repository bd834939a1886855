// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace PlatformSupport {

// The user's settings: values under names, each of a type. A value of another type than the one asked for counts as
// absent.
//
// Main thread.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    // Whether anything was ever stored under the name.
    virtual bool contains(std::string_view name) const = 0;
    virtual std::optional<bool> boolean(std::string_view name) const = 0;
    virtual std::optional<std::string> string(std::string_view name) const = 0;

    virtual void setBoolean(std::string_view name, bool value) = 0;
    virtual void setString(std::string_view name, std::string_view value) = 0;
};

// Settings that last as long as the object.
class MemoryUserDefaults final : public UserDefaults {
public:
    bool contains(std::string_view name) const override;
    std::optional<bool> boolean(std::string_view name) const override;
    std::optional<std::string> string(std::string_view name) const override;
    void setBoolean(std::string_view name, bool value) override;
    void setString(std::string_view name, std::string_view value) override;

private:
    template <typename T> std::optional<T> value(std::string_view name) const;

    std::map<std::string, std::variant<bool, std::string>, std::less<>> values_;
};

} // namespace PlatformSupport
