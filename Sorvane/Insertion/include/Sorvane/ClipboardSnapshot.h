// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/Pasteboard.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace Sorvane {

// All that a clipboard held at one moment, images and files as well as text, so that it can be put back.
//
// Main thread only.
class ClipboardSnapshot {
public:
    // What the clipboard holds now. One that changes while it is read is read again; only of one that never rests for
    // long enough is the latest reading kept.
    //
    // Errors: CancellationError
    static PlatformSupport::Awaitable<ClipboardSnapshot> of(DesktopServices::Pasteboard& pasteboard);

    // An item per thing that was copied, its types in order.
    const std::vector<DesktopServices::PasteboardItem>& items() const { return items_; }

    // Puts it back, unless the pasteboard's change count is no longer this: then somebody else has written to it, and
    // that stays.
    void restore(DesktopServices::Pasteboard& pasteboard, std::int64_t changeCount) const;

private:
    explicit ClipboardSnapshot(std::vector<DesktopServices::PasteboardItem> items)
        : items_(std::move(items))
    {
    }

    std::vector<DesktopServices::PasteboardItem> items_;
};

} // namespace Sorvane
