// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/AccessibilityTesting.h"

#include <algorithm>

namespace DesktopLinux {

namespace {

using DesktopServices::AccessibilityElement;
using DesktopServices::AccessibilityError;
namespace Attribute = DesktopServices::AccessibilityAttribute;

// What each toolkit tells of the same form, each in its own way.
class ToolkitsTest : public AccessibilityTesting, public testing::WithParamInterface<std::string> {
protected:
    ToolkitsTest()
        : AccessibilityTesting(FORMS_FOLDER "/" + GetParam())
    {
    }
};

TEST_P(ToolkitsTest, HaveFieldsForText)
{
    const auto line = focus(form, "line");
    EXPECT_EQ(text(line, Attribute::role), "AXTextField");
    EXPECT_EQ(line.read(Attribute::subrole).error, AccessibilityError::noValue);
    EXPECT_TRUE(line.read(Attribute::selectedTextRange).succeeded());
    EXPECT_EQ(line.read(Attribute::enabled).as<bool>(), true);
    EXPECT_EQ(text(line, Attribute::title), "The line");

    const auto page = focus(form, "page");
    EXPECT_TRUE(page.read(Attribute::selectedTextRange).succeeded());
    EXPECT_FALSE(page == line);
    EXPECT_EQ(line.read(Attribute::focused).as<bool>(), false);
}

TEST_P(ToolkitsTest, HidePasswordsAndKeepWhatIsFixed)
{
    EXPECT_EQ(text(focus(form, "password"), Attribute::subrole), "AXSecureTextField");
    const auto fixed = focus(form, "fixed");
    EXPECT_EQ(text(fixed, Attribute::role), "AXStaticText");
    EXPECT_EQ(fixed.read(Attribute::selectedTextRange).error, AccessibilityError::attributeUnsupported);
    const auto button = focus(form, "button");
    EXPECT_EQ(text(button, Attribute::role), "AXUnknown");
    EXPECT_EQ(button.read(Attribute::selectedTextRange).error, AccessibilityError::attributeUnsupported);
}

TEST_P(ToolkitsTest, KeepTheirFieldsInAWindow)
{
    const auto line = focus(form, "line");
    const auto window = line.read(Attribute::window).as<AccessibilityElement>();
    ASSERT_TRUE(window);
    EXPECT_EQ(text(*window, Attribute::role), "AXWindow");
    EXPECT_TRUE(text(*window, Attribute::title).starts_with("Form"));
    EXPECT_EQ(application(form).read(Attribute::focusedWindow).as<AccessibilityElement>(), window);
    EXPECT_EQ(line.process().identifier, form.process());
}

TEST_P(ToolkitsTest, HaveNoFocusBehindAnotherProgram)
{
    const auto line = focus(form, "line");
    OtherProgram front;
    bringForward(front);
    isShortcutHeld = true;
    EXPECT_EQ(focused(form), line);
}

TEST_P(ToolkitsTest, LoseTheirFields)
{
    const auto page = focus(form, "page");
    form.ask("remove page");
    while (page.read(Attribute::role).error != AccessibilityError::invalidElement) { }
}

std::string nameOf(const testing::TestParamInfo<std::string>& toolkit)
{
    auto name = toolkit.param;
    std::erase(name, '-');
    return name;
}

INSTANTIATE_TEST_SUITE_P(, ToolkitsTest, testing::Values("gtk3", "gtk4", "qt-widgets", "qt-quick", "chromium"), nameOf);

// Not all of them do.
class DisablingToolkitsTest : public ToolkitsTest { };

TEST_P(DisablingToolkitsTest, SayWhichFieldsAreDisabled)
{
    const auto line = focus(form, "line");
    form.ask("disable line");
    while (line.read(Attribute::enabled).as<bool>() != false) { }
}

INSTANTIATE_TEST_SUITE_P(, DisablingToolkitsTest, testing::Values("gtk3", "gtk4", "qt-widgets", "chromium"), nameOf);

} // namespace

} // namespace DesktopLinux
