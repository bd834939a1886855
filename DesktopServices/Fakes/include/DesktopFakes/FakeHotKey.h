// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/HotKey.h>

#include <optional>
#include <vector>

namespace DesktopFakes {

// A shortcut that the test, or the demonstration, presses.
class FakeHotKey final : public DesktopServices::HotKey {
public:
    // The user's finger. Nothing happens while no chord is in force.
    void press() { tell(DesktopServices::HotKeyEvent::pressed); }
    void release() { tell(DesktopServices::HotKeyEvent::released); }

    std::vector<DesktopServices::KeyChord> heldByOthers;

    const std::optional<DesktopServices::KeyChord>& chord() const { return chord_; }

    void setHandler(std::function<void(DesktopServices::HotKeyEvent)> handler) override;
    bool registerChord(const DesktopServices::KeyChord& chord) override;
    void unregister() override { chord_.reset(); }

private:
    void tell(DesktopServices::HotKeyEvent event) const;

    std::function<void(DesktopServices::HotKeyEvent)> handler_;
    std::optional<DesktopServices::KeyChord> chord_;
};

} // namespace DesktopFakes
