// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakeKeyEvents.h>
#include <DesktopFakes/FakeWorkspace.h>

namespace DesktopFakes {

using DesktopServices::commandMask;
using DesktopServices::KeyDirection;
using DesktopServices::KeyEvent;
using DesktopServices::ProcessIdentifier;
using DesktopServices::virtualKeyV;
using PlatformSupport::Awaitable;
using namespace std::chrono_literals;

class FakeKeyEvents::Source final : public DesktopServices::KeyEventSource {
public:
    explicit Source(FakeKeyEvents& keyboard)
        : keyboard_(keyboard)
    {
    }

    std::optional<KeyEvent> makeEvent(std::uint16_t virtualKey, KeyDirection direction) override
    {
        if (keyboard_.refusal == (direction == KeyDirection::down ? Refusal::keyDown : Refusal::keyUp))
            return std::nullopt;
        return KeyEvent { .virtualKey = virtualKey, .direction = direction };
    }

    Awaitable<bool> untilModifiersAreUp() override
    {
        auto& clock = keyboard_.workspace_.time().clock();
        const auto end = clock.now() + 2s;
        while (keyboard_.modifiersAreHeld && clock.now() < end)
            co_await clock.sleep(10ms);
        co_return !keyboard_.modifiersAreHeld;
    }

    void post(const KeyEvent& event, ProcessIdentifier process) override { keyboard_.post({ event, process }); }

private:
    FakeKeyEvents& keyboard_;
};

std::unique_ptr<DesktopServices::KeyEventSource> FakeKeyEvents::makePrivateSource()
{
    if (refusal == Refusal::source)
        return nullptr;
    return std::make_unique<Source>(*this);
}

void FakeKeyEvents::post(const Posted& event)
{
    const Posted keyDown { { virtualKeyV, KeyDirection::down, commandMask }, event.process };
    const Posted keyUp { { virtualKeyV, KeyDirection::up, commandMask }, event.process };
    const bool isPaste = event == keyUp && !posted.empty() && posted.back() == keyDown;
    posted.push_back(event);
    if (auto* application = workspace_.find(event.process); application && isPaste)
        application->pasteKeyPressed();
}

} // namespace DesktopFakes
