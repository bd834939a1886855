// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "X11/SelectionOwner.h"
#include "X11/SelectionReader.h"

#include <DesktopServices/Pasteboard.h>

namespace DesktopLinux {

// The CLIPBOARD selection. Everything on it is one item, whose forms are those that its owner offers.
//
// What is written here is there as long as this program runs and no other copies something.
//
// Main thread only.
class X11Pasteboard final : public DesktopServices::Pasteboard {
public:
    X11Pasteboard(XConnection& connection, PlatformSupport::Executor mainThread, PlatformSupport::Clock& clock);

    std::int64_t changeCount() const override;
    PlatformSupport::Awaitable<std::vector<DesktopServices::PasteboardItem>> items() override;
    void clearContents() override;
    bool setString(std::string_view text, std::string_view type) override;
    bool writeItems(const std::vector<DesktopServices::PasteboardItem>& items) override;
    bool wasTakenBy(DesktopServices::ProcessIdentifier process) const override;

    // For programs that paste what is selected: until the next clearContents() what is written here counts as selected
    // too.
    void lendToPrimarySelection();

private:
    using Representations = std::vector<DesktopServices::PasteboardRepresentation>;

    bool isChange(const xcb_generic_event_t& event) const;
    PlatformSupport::Awaitable<Representations> readOnce();

    XConnection& connection_;
    PlatformSupport::Executor mainThread_;
    PlatformSupport::Clock& clock_;
    xcb_atom_t selection_;
    std::uint8_t changeEvent_; // its kind
    std::int64_t changes_ = 0; // those that the main loop has handed out
    SelectionOwner clipboard_;
    SelectionOwner primary_;
    XConnection::Subscription events_;
};

} // namespace DesktopLinux
