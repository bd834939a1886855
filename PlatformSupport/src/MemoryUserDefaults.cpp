// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/UserDefaults.h>

namespace PlatformSupport {

template <typename T> std::optional<T> MemoryUserDefaults::value(std::string_view name) const
{
    const auto found = values_.find(name);
    const T* const value = found == values_.end() ? nullptr : std::get_if<T>(&found->second);
    return value ? std::optional(*value) : std::nullopt;
}

bool MemoryUserDefaults::contains(std::string_view name) const
{
    return values_.contains(name);
}

std::optional<bool> MemoryUserDefaults::boolean(std::string_view name) const
{
    return value<bool>(name);
}

std::optional<std::string> MemoryUserDefaults::string(std::string_view name) const
{
    return value<std::string>(name);
}

void MemoryUserDefaults::setBoolean(std::string_view name, bool value)
{
    values_[std::string(name)] = value;
}

void MemoryUserDefaults::setString(std::string_view name, std::string_view value)
{
    values_[std::string(name)] = std::string(value);
}

} // namespace PlatformSupport
