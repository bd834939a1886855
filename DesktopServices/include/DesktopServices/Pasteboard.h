// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/ProcessIdentifier.h>
#include <PlatformSupport/Awaitable.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace DesktopServices {

// The type of plain text in UTF-8.
inline constexpr std::string_view pasteboardStringType = "public.utf8-plain-text";

// One of the forms in which a pasteboard item is offered.
struct PasteboardRepresentation {
    std::string type;
    std::vector<std::byte> data;

    bool operator==(const PasteboardRepresentation&) const = default;
};

// One thing that was copied, in all its forms, the preferred one first.
struct PasteboardItem {
    std::vector<PasteboardRepresentation> representations;

    bool operator==(const PasteboardItem&) const = default;
};

// The clipboard that all programs share. Any of them may write to it at any time.
//
// Main thread only.
class Pasteboard {
public:
    Pasteboard() = default;
    Pasteboard(const Pasteboard&) = delete;
    Pasteboard& operator=(const Pasteboard&) = delete;
    virtual ~Pasteboard() = default;

    // Grows with every write by any program.
    virtual std::int64_t changeCount() const = 0;

    // Everything on the pasteboard, all types of all items, in order. The program that copied it is asked, within a
    // bound of the implementation's own; a type for which it gives no data is left out.
    //
    // Errors: CancellationError, if the task is cancelled while it waits
    virtual PlatformSupport::Awaitable<std::vector<PasteboardItem>> items() = 0;

    // Empties the pasteboard and makes this program its writer.
    virtual void clearContents() = 0;

    // After clearContents(). They say whether the pasteboard took it.
    virtual bool setString(std::string_view text, std::string_view type) = 0;
    virtual bool writeItems(const std::vector<PasteboardItem>& items) = 0;

    // Whether the process has taken anything of what was written since the last clearContents(). Nothing tells what it
    // did with it.
    virtual bool wasTakenBy(ProcessIdentifier process) const = 0;
};

} // namespace DesktopServices
