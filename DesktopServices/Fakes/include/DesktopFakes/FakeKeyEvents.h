// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopFakes/FakeTime.h>
#include <DesktopServices/KeyEvents.h>

#include <optional>
#include <vector>

namespace DesktopFakes {

class FakeWorkspace;

// Keys that no finger presses, and the programs that get them: Command-V, once the key is up, pastes the text that is
// on the clipboard then into what has the program's focus.
class FakeKeyEvents final : public DesktopServices::KeyEvents {
public:
    struct Posted {
        DesktopServices::KeyEvent event;
        DesktopServices::ProcessIdentifier process = 0;

        bool operator==(const Posted&) const = default;
    };

    enum class Refusal { source, keyDown, keyUp };

    explicit FakeKeyEvents(FakeWorkspace& workspace)
        : workspace_(workspace)
    {
    }

    std::vector<Posted> posted;
    std::optional<Refusal> refusal;
    bool modifiersAreHeld = false; // by the user; a source waits two seconds for them

    std::unique_ptr<DesktopServices::KeyEventSource> makePrivateSource() override;

private:
    class Source;

    void post(const Posted& event);

    FakeWorkspace& workspace_;
};

} // namespace DesktopFakes
