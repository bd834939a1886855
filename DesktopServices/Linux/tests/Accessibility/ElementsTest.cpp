// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/AccessibilityTesting.h"

namespace DesktopLinux {

namespace {

using DesktopServices::AccessibilityElement;
using DesktopServices::AccessibilityError;
using DesktopServices::AccessibilityRange;
namespace Attribute = DesktopServices::AccessibilityAttribute;
using namespace std::chrono_literals;

class ElementsTest : public AccessibilityTesting { };

TEST_F(ElementsTest, TellTheirRoles)
{
    EXPECT_EQ(text(focus(form, "line"), Attribute::role), "AXTextField");
    EXPECT_EQ(text(focus(form, "page"), Attribute::role), "AXTextArea");
    EXPECT_EQ(text(focus(form, "button"), Attribute::role), "AXUnknown");
    EXPECT_EQ(text(application(form), Attribute::role), "AXApplication");
}

TEST_F(ElementsTest, SayThatTheyHideWhatIsTyped)
{
    EXPECT_EQ(text(focus(form, "password"), Attribute::subrole), "AXSecureTextField");
    EXPECT_EQ(focus(form, "line").read(Attribute::subrole).error, AccessibilityError::noValue);
}

TEST_F(ElementsTest, HaveASelectionOnlyWhereTextCanBeEntered)
{
    const auto range = focus(form, "line").read(Attribute::selectedTextRange).as<AccessibilityRange>();
    EXPECT_EQ(range, (AccessibilityRange { 0, 0 }));
    EXPECT_TRUE(focus(form, "page").read(Attribute::selectedTextRange).succeeded());
    const auto fixed = focus(form, "fixed");
    EXPECT_EQ(fixed.read(Attribute::selectedTextRange).error, AccessibilityError::attributeUnsupported);
    EXPECT_EQ(text(fixed, Attribute::role), "AXStaticText");
    const auto button = focus(form, "button");
    EXPECT_EQ(button.read(Attribute::selectedTextRange).error, AccessibilityError::attributeUnsupported);
}

TEST_F(ElementsTest, TellTheirLabels)
{
    const auto line = focus(form, "line");
    EXPECT_EQ(text(line, Attribute::title), "The line");
    EXPECT_EQ(text(line, Attribute::description), "A line for tests");
    EXPECT_FALSE(line.read(Attribute::identifier).succeeded());
    EXPECT_EQ(focus(form, "page").read(Attribute::title).error, AccessibilityError::noValue);
}

TEST_F(ElementsTest, HaveTheLabelBesideThemAsTheirTitle)
{
    OtherProgram labels(FORMS_FOLDER "/gtk3-labels");
    EXPECT_EQ(text(focus(labels, "line"), Attribute::title), "Beside");
}

TEST_F(ElementsTest, SayWhetherTheyAreEnabledAndFocused)
{
    const auto line = focus(form, "line");
    EXPECT_EQ(line.read(Attribute::enabled).as<bool>(), true);
    EXPECT_EQ(line.read(Attribute::focused).as<bool>(), true);
    focus(form, "page");
    EXPECT_EQ(line.read(Attribute::focused).as<bool>(), false);
    form.ask("disable line");
    EXPECT_EQ(line.read(Attribute::enabled).as<bool>(), false);
}

TEST_F(ElementsTest, LieInAWindowOfTheirProgram)
{
    const auto line = focus(form, "line");
    const auto window = line.read(Attribute::window).as<AccessibilityElement>();
    ASSERT_TRUE(window);
    EXPECT_EQ(text(*window, Attribute::role), "AXWindow");
    EXPECT_EQ(text(*window, Attribute::title), "Form");
    EXPECT_EQ(application(form).read(Attribute::focusedWindow).as<AccessibilityElement>(), window);
    EXPECT_EQ(line.process().identifier, form.process());

    auto ancestor = std::optional(line);
    while (ancestor && text(*ancestor, Attribute::role) != "AXApplication")
        ancestor = ancestor->read(Attribute::parent).as<AccessibilityElement>();
    EXPECT_TRUE(ancestor);
}

TEST_F(ElementsTest, AreEqualWhenTheyMeanTheSame)
{
    const auto line = focus(form, "line");
    const auto page = focus(form, "page");
    EXPECT_FALSE(line == page);
    EXPECT_EQ(line, focus(form, "line"));
    EXPECT_EQ(application(form), application(form));
    EXPECT_FALSE(application(form) == line);
}

TEST_F(ElementsTest, RefuseWhatTheyDoNotHave)
{
    const auto line = focus(form, "line");
    EXPECT_EQ(line.read("AXSomething").error, AccessibilityError::attributeUnsupported);
    EXPECT_EQ(line.read(Attribute::url).error, AccessibilityError::attributeUnsupported);
    EXPECT_EQ(line.write(Attribute::enabled, true), AccessibilityError::attributeUnsupported);
    EXPECT_EQ(line.perform("AXRaise"), AccessibilityError::actionUnsupported);
    EXPECT_EQ(application(form).read(Attribute::title).error, AccessibilityError::attributeUnsupported);
}

TEST_F(ElementsTest, TakeTheFocusWhenToldTo)
{
    const auto line = focus(form, "line");
    focus(form, "page");
    EXPECT_EQ(line.write(Attribute::focused, true), AccessibilityError::success);
    while (focused(form) != line) { }
}

TEST_F(ElementsTest, AreGoneWithTheirProgram)
{
    const auto line = focus(form, "line");
    form.kill();
    while (line.read(Attribute::role).error != AccessibilityError::invalidElement)
        loop.turn();
    EXPECT_EQ(line.process().error, AccessibilityError::invalidElement);
    EXPECT_FALSE(focused(form));
}

TEST_F(ElementsTest, AreGoneOnceTheyAreRemoved)
{
    const auto line = focus(form, "line");
    form.ask("remove line");
    while (line.read(Attribute::role).error != AccessibilityError::invalidElement)
        loop.turn();
    EXPECT_FALSE(line.read(Attribute::selectedTextRange).succeeded());
}

TEST_F(ElementsTest, OfAFrozenProgramAreNotWaitedFor)
{
    const auto line = focus(form, "line");
    form.freeze();
    for (const auto attribute : { Attribute::role, Attribute::subrole, Attribute::title, Attribute::window,
             Attribute::enabled, Attribute::selectedTextRange, Attribute::identifier })
        EXPECT_EQ(line.read(attribute, 20ms).error, AccessibilityError::cannotComplete) << attribute;
    EXPECT_EQ(line.write(Attribute::focused, true, 20ms), AccessibilityError::cannotComplete);
    EXPECT_EQ(line.process().identifier, form.process()); // which the bus tells
    form.thaw();
    EXPECT_EQ(text(line, Attribute::title), "The line");
}

TEST_F(ElementsTest, AreGoneWithTheBusTheyWereReadFrom)
{
    std::optional<AccessibilityElement> line;
    std::optional<AccessibilityElement> program;
    {
        AccessibilityBus shortLived(loop.executor(), [] { return false; });
        while (!shortLived.isEnabled())
            loop.turn();
        form.ask("focus line");
        program = shortLived.accessibility().applicationElement(form.process());
        while (!(line = program->read(Attribute::focusedElement).as<AccessibilityElement>()))
            loop.turn();
    }
    EXPECT_EQ(line->read(Attribute::role).error, AccessibilityError::invalidElement);
    EXPECT_EQ(line->process().error, AccessibilityError::invalidElement);
    EXPECT_EQ(line->write(Attribute::focused, true), AccessibilityError::invalidElement);
    EXPECT_EQ(program->read(Attribute::focusedElement).error, AccessibilityError::invalidElement);
}

} // namespace

} // namespace DesktopLinux
