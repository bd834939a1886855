// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/ClipboardSnapshot.h>

namespace Sorvane {

using DesktopServices::Pasteboard;
using PlatformSupport::Awaitable;

namespace {

constexpr int attemptsAtReading = 3;

}

Awaitable<ClipboardSnapshot> ClipboardSnapshot::of(Pasteboard& pasteboard)
{
    for (int attempt = 1;; ++attempt) {
        const auto changeCount = pasteboard.changeCount();
        auto items = co_await pasteboard.items();
        if (pasteboard.changeCount() == changeCount || attempt == attemptsAtReading)
            co_return ClipboardSnapshot(std::move(items));
    }
}

void ClipboardSnapshot::restore(Pasteboard& pasteboard, std::int64_t changeCount) const
{
    if (pasteboard.changeCount() != changeCount)
        return;
    pasteboard.clearContents();
    if (!items_.empty())
        pasteboard.writeItems(items_);
}

} // namespace Sorvane
