// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopFakes/FakeTime.h>
#include <DesktopServices/Pasteboard.h>

#include <functional>
#include <optional>
#include <set>
#include <string>

namespace DesktopFakes {

// A clipboard, to which the user may copy in other programs.
class FakePasteboard final : public DesktopServices::Pasteboard {
public:
    explicit FakePasteboard(FakeTime time)
        : time_(std::move(time))
    {
    }

    // The user copies something in another program.
    void copy(std::string_view text);
    void copy(std::vector<DesktopServices::PasteboardItem> items);

    // A program pastes.
    std::optional<std::string> takeString(DesktopServices::ProcessIdentifier process);

    const std::vector<DesktopServices::PasteboardItem>& contents() const { return items_; }
    std::optional<std::string> string() const; // nothing if there is no text

    // Bad behaviour, or good timing
    void failNextSetString() { failsNextSetString_ = true; }
    void failEverySetString() { failsEverySetString_ = true; }
    void takeTimeToRead(PlatformSupport::Clock::Duration duration) { readingTime_ = duration; }
    void onNextRead(std::function<void()> action) { onNextRead_ = std::move(action); } // once it was read
    void onNextSetString(std::function<void()> action) { onNextSetString_ = std::move(action); }

    std::int64_t changeCount() const override { return changeCount_; }
    PlatformSupport::Awaitable<std::vector<DesktopServices::PasteboardItem>> items() override;
    void clearContents() override;
    bool setString(std::string_view text, std::string_view type) override;
    bool writeItems(const std::vector<DesktopServices::PasteboardItem>& items) override;
    bool wasTakenBy(DesktopServices::ProcessIdentifier process) const override { return takers_.contains(process); }

private:
    FakeTime time_;
    std::int64_t changeCount_ = 1;
    std::vector<DesktopServices::PasteboardItem> items_;
    std::set<DesktopServices::ProcessIdentifier> takers_; // of what this program wrote
    bool failsNextSetString_ = false;
    bool failsEverySetString_ = false;
    PlatformSupport::Clock::Duration readingTime_ {};
    std::function<void()> onNextRead_;
    std::function<void()> onNextSetString_;
};

// One item with one type, or any number.
DesktopServices::PasteboardRepresentation representation(std::string_view type, std::string_view data);

} // namespace DesktopFakes
