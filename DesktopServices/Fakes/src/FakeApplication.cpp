// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakeApplication.h>
#include <DesktopFakes/FakeWorkspace.h>
#include <DesktopServices/AccessibilityNames.h>

#include <utility>

namespace DesktopFakes {

namespace AccessibilityRole = DesktopServices::AccessibilityRole;

FakeApplication::FakeApplication(
    FakeWorkspace& workspace, DesktopServices::ProcessIdentifier process, const FakeApplicationLook& look)
    : workspace_(workspace)
    , process_(process)
    , look_(look)
    , element_(std::make_shared<FakeElement>(*this, nullptr,
          FakeElementLook { .role = std::string(AccessibilityRole::application), .title = look.name.value_or("") }))
{
}

FakeElement& FakeApplication::openWindow(const std::string& title)
{
    auto& window = element_->add({ .role = std::string(AccessibilityRole::window), .title = title });
    focus(nullptr, &window);
    return window;
}

void FakeApplication::freeze()
{
    isFrozen_ = true;
}

void FakeApplication::thaw()
{
    isFrozen_ = false;
    for (auto pastes = std::exchange(waitingPastes_, 0); pastes > 0; --pastes)
        pasteKeyPressed();
}

void FakeApplication::quit()
{
    isTerminated_ = true;
    workspace_.leave(*this);
}

void FakeApplication::activate()
{
    ++timesActivated_;
    if (ignoresActivation_)
        return;
    workspace_.time().after(activationDelay_, [held = weak_from_this()] {
        if (const auto application = held.lock())
            application->workspace_.bringToFront(*application);
    });
}

void FakeApplication::focus(FakeElement* element, FakeElement* window)
{
    focused_ = element;
    focusedWindow_ = window;
    if (window)
        window->lastFocused_ = element;
}

void FakeApplication::focusWindow(FakeElement& window)
{
    focus(window.lastFocused_, &window);
}

void FakeApplication::forget(const FakeElement& element)
{
    if (auto* window = element.window(); window && window->lastFocused_ == &element)
        window->lastFocused_ = nullptr;
    if (focused_ == &element)
        focused_ = nullptr;
    if (focusedWindow_ == &element)
        focusedWindow_ = nullptr;
}

void FakeApplication::pasteKeyPressed()
{
    if (isFrozen_) {
        ++waitingPastes_;
        return;
    }
    workspace_.time().after(pasteDelay_, [held = weak_from_this()] {
        if (const auto application = held.lock())
            application->paste();
    });
}

void FakeApplication::paste()
{
    if (focused_ && focused_->acceptsText())
        focused_->type(workspace_.pasteboard().takeString(process_).value_or(""));
}

} // namespace DesktopFakes
