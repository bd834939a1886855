// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakePasteboard.h>

#include <span>
#include <utility>

namespace DesktopFakes {

using DesktopServices::PasteboardItem;
using DesktopServices::PasteboardRepresentation;
using DesktopServices::pasteboardStringType;
using PlatformSupport::Awaitable;

PasteboardRepresentation representation(std::string_view type, std::string_view data)
{
    const auto bytes = std::as_bytes(std::span(data));
    return { std::string(type), { bytes.begin(), bytes.end() } };
}

void FakePasteboard::copy(std::string_view text)
{
    copy({ PasteboardItem { { representation(pasteboardStringType, text) } } });
}

void FakePasteboard::copy(std::vector<PasteboardItem> items)
{
    ++changeCount_;
    items_ = std::move(items);
}

std::optional<std::string> FakePasteboard::string() const
{
    for (const auto& item : items_)
        for (const auto& [type, data] : item.representations)
            if (type == pasteboardStringType)
                return std::string(reinterpret_cast<const char*>(data.data()), data.size());
    return std::nullopt;
}

std::optional<std::string> FakePasteboard::takeString(DesktopServices::ProcessIdentifier process)
{
    takers_.insert(process);
    return string();
}

Awaitable<std::vector<PasteboardItem>> FakePasteboard::items()
{
    auto items = items_;
    if (readingTime_ > readingTime_.zero())
        co_await time_.clock().sleep(readingTime_);
    if (const auto action = std::exchange(onNextRead_, nullptr))
        action();
    co_return items;
}

void FakePasteboard::clearContents()
{
    ++changeCount_;
    items_.clear();
    takers_.clear();
}

bool FakePasteboard::setString(std::string_view text, std::string_view type)
{
    if (std::exchange(failsNextSetString_, false) || failsEverySetString_)
        return false;
    items_ = { PasteboardItem { { representation(type, text) } } };
    if (const auto action = std::exchange(onNextSetString_, nullptr))
        action();
    return true;
}

bool FakePasteboard::writeItems(const std::vector<PasteboardItem>& items)
{
    items_ = items;
    return true;
}

} // namespace DesktopFakes
