// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/FileUserDefaults.h>
#include <PlatformSupport/WholeFile.h>

#include <utility>

namespace PlatformSupport {

namespace {

// Some hundred times what the settings need.
constexpr size_t largestFile = 1024 * 1024;

} // namespace

FileUserDefaults::FileUserDefaults(std::filesystem::path path)
    : path_(std::move(path))
{
    read();
}

void FileUserDefaults::read()
{
    std::error_code none;
    if (!std::filesystem::exists(path_, none) && !none)
        return;
    try {
        auto values = nlohmann::json::parse(readFile(path_, largestFile));
        isDamaged_ = !values.is_object();
        if (!isDamaged_)
            values_ = std::move(values);
    } catch (const std::exception&) {
        isDamaged_ = true;
    }
}

bool FileUserDefaults::contains(std::string_view name) const
{
    return values_.contains(name);
}

std::optional<bool> FileUserDefaults::boolean(std::string_view name) const
{
    return value<bool>(name);
}

std::optional<std::string> FileUserDefaults::string(std::string_view name) const
{
    return value<std::string>(name);
}

template <typename T> std::optional<T> FileUserDefaults::value(std::string_view name) const
{
    const auto found = values_.find(name);
    const auto* const value = found == values_.end() ? nullptr : found->template get_ptr<const T*>();
    return value ? std::optional(*value) : std::nullopt;
}

void FileUserDefaults::setBoolean(std::string_view name, bool value)
{
    set(name, value);
}

void FileUserDefaults::setString(std::string_view name, std::string_view value)
{
    set(name, value);
}

void FileUserDefaults::set(std::string_view name, nlohmann::json value)
{
    auto& place = values_[std::string(name)];
    if (place == value && !writeError_ && !isDamaged_)
        return;
    place = std::move(value);
    try {
        write();
        writeError_.reset();
    } catch (const std::filesystem::filesystem_error& error) {
        writeError_ = error.what();
    }
}

void FileUserDefaults::write()
{
    using nlohmann::json;
    std::filesystem::create_directories(path_.parent_path());
    if (isDamaged_)
        std::filesystem::rename(path_, path_.string() + ".damaged");
    isDamaged_ = false;
    replaceFile(path_, values_.dump(2, ' ', false, json::error_handler_t::replace) + "\n", Durability::replacement);
}

} // namespace PlatformSupport
