// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/AccessibilityTesting.h"

namespace DesktopLinux {

namespace {

using DesktopServices::AccessibilityElement;
namespace Attribute = DesktopServices::AccessibilityAttribute;
using namespace std::chrono_literals;

constexpr auto addressBar = "Address and search bar";

// A browser's own fields, and the page that goes on saying that it has the focus.
class BrowserTest : public AccessibilityTesting {
protected:
    BrowserTest()
        : AccessibilityTesting(FORMS_FOLDER "/chromium")
    {
    }

    std::string titleOfFocus(AccessibilityBus& from)
    {
        const auto element = from.accessibility()
                                 .applicationElement(form.process())
                                 .read(Attribute::focusedElement, 5s)
                                 .as<AccessibilityElement>();
        return element ? text(*element, Attribute::title) : "";
    }

    void goToAddressBar()
    {
        EXPECT_EQ(form.ask("focus address"), "done");
        while (titleOfFocus(bus) != addressBar)
            loop.turn();
    }
};

TEST_F(BrowserTest, HasTheFocusInItsAddressBarWhileThePageClaimsIt)
{
    const auto page = focus(form, "page");
    goToAddressBar();
    EXPECT_EQ(page.read(Attribute::focused).as<bool>(), true);

    AccessibilityBus later(loop.executor(), [] { return false; }); // which was told nothing
    while (!later.isEnabled())
        loop.turn();
    EXPECT_EQ(titleOfFocus(later), addressBar);
}

TEST_F(BrowserTest, KeepsTheFocusInItsAddressBarWhileTheShortcutIsHeld)
{
    focus(form, "page");
    goToAddressBar();
    isShortcutHeld = true;
    EXPECT_EQ(titleOfFocus(bus), addressBar);
}

TEST_F(BrowserTest, FindsTheFocusInAPageThatNothingWasToldOf)
{
    const auto page = focus(form, "page");
    AccessibilityBus later(loop.executor(), [] { return false; });
    while (!later.isEnabled())
        loop.turn();
    const auto found = later.accessibility()
                           .applicationElement(form.process())
                           .read(Attribute::focusedElement, 5s)
                           .as<AccessibilityElement>();
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, page);
}

} // namespace

} // namespace DesktopLinux
