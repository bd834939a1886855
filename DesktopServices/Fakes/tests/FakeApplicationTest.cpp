// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "DesktopTest.h"

#include <DesktopServices/AccessibilityNames.h>

namespace DesktopFakes {
namespace {

namespace AccessibilityAction = DesktopServices::AccessibilityAction;
namespace AccessibilityAttribute = DesktopServices::AccessibilityAttribute;
using DesktopServices::AccessibilityElement;
using DesktopServices::AccessibilityError;
using DesktopServices::AccessibilityRange;
using DesktopServices::AccessibilityURL;

TEST_F(DesktopTest, AnswersForItsElements)
{
    const auto field = field_.handle();
    EXPECT_EQ(field.read(AccessibilityAttribute::role).as<std::string>(), "AXTextArea");
    EXPECT_EQ(field.read(AccessibilityAttribute::title).as<std::string>(), "Note");
    EXPECT_EQ(field.read(AccessibilityAttribute::subrole).error, AccessibilityError::noValue);
    EXPECT_EQ(field.read(AccessibilityAttribute::enabled).as<bool>(), true);
    EXPECT_EQ(field.read(AccessibilityAttribute::parent).as<AccessibilityElement>(), window_.handle());
    EXPECT_EQ(field.read(AccessibilityAttribute::window).as<AccessibilityElement>(), window_.handle());
    EXPECT_EQ(field.read(AccessibilityAttribute::selectedTextRange).as<AccessibilityRange>(), AccessibilityRange());
    EXPECT_EQ(field.read("AXNonsense").error, AccessibilityError::attributeUnsupported);
    EXPECT_EQ(field.process().identifier, editor_.processIdentifier());
    EXPECT_NE(field, window_.handle());
}

TEST_F(DesktopTest, GivesOnlyTextFieldsASelection)
{
    EXPECT_EQ(window_.addGroup().handle().read(AccessibilityAttribute::selectedTextRange).error,
        AccessibilityError::attributeUnsupported);
}

TEST_F(DesktopTest, FindsAFieldsWindowThroughAllThatLiesBetween)
{
    auto& page = window_.addWebArea("https://example.org/");
    auto& field = page.addGroup().addTextField();
    EXPECT_EQ(field.window(), &window_);
    EXPECT_EQ(page.handle().read(AccessibilityAttribute::url).as<AccessibilityURL>()->text, "https://example.org/");
}

TEST_F(DesktopTest, TellsWhatHasTheFocus)
{
    const auto application = desktop_.accessibility.applicationElement(editor_.processIdentifier());
    EXPECT_EQ(application.read(AccessibilityAttribute::focusedElement).as<AccessibilityElement>(), field_.handle());
    EXPECT_EQ(application.read(AccessibilityAttribute::focusedWindow).as<AccessibilityElement>(), window_.handle());
    editor_.openWindow("Empty");
    EXPECT_EQ(application.read(AccessibilityAttribute::focusedElement).error, AccessibilityError::noValue);
}

TEST_F(DesktopTest, RemembersTheFocusOfAWindow)
{
    auto& other = editor_.openWindow("Other");
    EXPECT_FALSE(field_.isFocused());
    window_.handle().write(AccessibilityAttribute::main, true);
    EXPECT_TRUE(field_.isFocused());
    EXPECT_EQ(editor_.focusedWindow(), &window_);
    other.remove();
    EXPECT_TRUE(field_.isFocused());
    field_.remove();
    EXPECT_EQ(editor_.focusedElement(), nullptr);
    EXPECT_EQ(editor_.focusedWindow(), &window_);
}

TEST_F(DesktopTest, GivesAnElementTheFocusUnlessItRefuses)
{
    auto& other = window_.addTextField();
    other.handle().write(AccessibilityAttribute::focused, true);
    EXPECT_TRUE(other.isFocused());
    field_.refuseFocus();
    field_.handle().write(AccessibilityAttribute::focused, true);
    EXPECT_TRUE(other.isFocused());
}

TEST_F(DesktopTest, RaisesOnlyWindows)
{
    EXPECT_EQ(window_.handle().perform(AccessibilityAction::raise), AccessibilityError::success);
    EXPECT_EQ(field_.handle().perform(AccessibilityAction::raise), AccessibilityError::actionUnsupported);
    EXPECT_EQ(desktop_.accessibility.changes(), (std::vector<std::string> { "perform AXRaise", "perform AXRaise" }));
}

TEST_F(DesktopTest, HoldsUpWhoeverAsksAFrozenProgram)
{
    editor_.freeze();
    EXPECT_EQ(field_.handle().read(AccessibilityAttribute::role, 150ms).error, AccessibilityError::cannotComplete);
    EXPECT_EQ(clock_.now().time_since_epoch(), 150ms);
    EXPECT_EQ(field_.handle().process().identifier, editor_.processIdentifier());
    editor_.thaw();
    EXPECT_TRUE(field_.handle().read(AccessibilityAttribute::role, 150ms).succeeded());
    EXPECT_EQ(clock_.now().time_since_epoch(), 150ms);
}

TEST_F(DesktopTest, AnswersLateIfThereIsTime)
{
    field_.answerAfter(AccessibilityAttribute::title, 40ms);
    EXPECT_EQ(field_.handle().read(AccessibilityAttribute::title, 50ms).as<std::string>(), "Note");
    EXPECT_EQ(clock_.now().time_since_epoch(), 40ms);
    EXPECT_EQ(field_.handle().read(AccessibilityAttribute::title, 10ms).error, AccessibilityError::cannotComplete);
    EXPECT_EQ(clock_.now().time_since_epoch(), 50ms);
}

TEST_F(DesktopTest, KnowsNothingOfWhatIsGone)
{
    const auto field = field_.handle();
    window_.remove();
    EXPECT_EQ(field.read(AccessibilityAttribute::role).error, AccessibilityError::invalidElement);
    EXPECT_EQ(field.process().identifier, editor_.processIdentifier());
    editor_.quit();
    EXPECT_TRUE(editor_.isTerminated());
    EXPECT_EQ(field.process().error, AccessibilityError::invalidElement);
    EXPECT_EQ(desktop_.workspace.frontmostApplication(), nullptr);
}

TEST_F(DesktopTest, SaysWhatItIsToldToSay)
{
    field_.answer(AccessibilityAttribute::role, AccessibilityRange { 1, 2 });
    EXPECT_EQ(field_.handle().read(AccessibilityAttribute::role).as<std::string>(), std::nullopt);
    field_.answer(AccessibilityAttribute::parent, field_);
    EXPECT_EQ(field_.handle().read(AccessibilityAttribute::parent).as<AccessibilityElement>(), field_.handle());
    field_.fail(AccessibilityAttribute::parent, AccessibilityError::failure);
    EXPECT_EQ(field_.handle().read(AccessibilityAttribute::parent).error, AccessibilityError::failure);
    field_.claimProcess({ .identifier = 7 });
    EXPECT_EQ(field_.handle().process().identifier, 7);
}

TEST_F(DesktopTest, ChangesRightAfterItWasRead)
{
    field_.onNextRead([this] { field_.remove(); });
    EXPECT_TRUE(field_.handle().read(AccessibilityAttribute::role).succeeded());
    EXPECT_FALSE(field_.handle().read(AccessibilityAttribute::role).succeeded());
}

TEST_F(DesktopTest, ComesToTheFrontWhenItLikes)
{
    editor_.comeToFrontAfter(200ms);
    desktop_.leaveAll();
    editor_.activate();
    clock_.advance(199ms);
    EXPECT_EQ(desktop_.workspace.frontmostApplication(), nullptr);
    clock_.advance(1ms);
    EXPECT_EQ(desktop_.workspace.frontmostApplication().get(), &editor_);
    desktop_.leaveAll();
    editor_.ignoreActivation();
    editor_.activate();
    clock_.advance(1h);
    EXPECT_EQ(desktop_.workspace.frontmostApplication(), nullptr);
    EXPECT_EQ(editor_.timesActivated(), 2U);
}

TEST_F(DesktopTest, MovesAnElementToAnotherWindow)
{
    const auto field = field_.handle();
    auto& other = editor_.openWindow("Other");
    field_.moveInto(other);
    EXPECT_EQ(field.read(AccessibilityAttribute::window).as<AccessibilityElement>(), other.handle());
}

} // namespace
} // namespace DesktopFakes
