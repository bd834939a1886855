// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "RealDesktop.h"

#include <DesktopServices/AccessibilityNames.h>

#include <gtest/gtest.h>

#include <thread>

namespace Sorvane {

DesktopServices::Desktop RealDesktop::services()
{
    return { bus.accessibility(), x11.workspace(), x11.pasteboard(), x11.keyEvents(), x11.hotKey(), permissions,
        launching, log };
}

void RealDesktop::untilAccessible()
{
    while (!permissions.isAccessibilityTrusted())
        loop.turn();
}

void RealDesktop::goTo(const std::string& field)
{
    EXPECT_EQ(form.ask("focus " + field), "done");
    untilFocused(field);
}

void RealDesktop::untilFocused(const std::string& field)
{
    untilFocusIsDescribedAs("A " + field + " for tests");
}

void RealDesktop::untilFocusIsDescribedAs(const std::string& description)
{
    while (descriptionOfFocus() != description || !isInFront(form))
        loop.turn();
}

void RealDesktop::untilUnfocused()
{
    while (descriptionOfFocus())
        loop.turn();
}

std::optional<std::string> RealDesktop::descriptionOfFocus()
{
    namespace Attribute = DesktopServices::AccessibilityAttribute;
    const auto element = bus.accessibility()
                             .applicationElement(form.process())
                             .read(Attribute::focusedElement)
                             .as<DesktopServices::AccessibilityElement>();
    return element ? element->read(Attribute::description).as<std::string>() : std::nullopt;
}

bool RealDesktop::isInFront(const OtherProgram& program)
{
    const auto front = x11.workspace().frontmostApplication();
    return front && front->processIdentifier() == program.process();
}

void RealDesktop::press(Keys keys)
{
    for (const auto key : keys)
        keyboard.fakeKey(keyboard.keyWith(key).value_or(0), true);
}

void RealDesktop::release(Keys keys)
{
    for (const auto key : keys)
        keyboard.fakeKey(keyboard.keyWith(key).value_or(0), false);
}

void RealDesktop::type(Keys keys)
{
    press(keys);
    release(keys);
}

std::string RealDesktop::serve(OtherProgram& program, const std::string& command)
{
    program.tell(command);
    std::string answer;
    const std::jthread reader([&] { loop.executor().execute([&, line = program.answer()] { answer = line; }); });
    loop.turnUntil([&] { return !answer.empty(); });
    return answer;
}

} // namespace Sorvane
