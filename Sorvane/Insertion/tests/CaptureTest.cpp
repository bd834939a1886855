// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InsertionTest.h"

namespace Sorvane {
namespace {

TEST_F(InsertionTest, RefusesPasswordFieldsHoweverElseTheyLook)
{
    EXPECT_EQ(
        failureOf([] { TextInsertion::validateField("AXTextField", "AXSecureTextField", true); }), Case::secureField);
}

TEST_F(InsertionTest, TakesTextFieldsOfThreeRoles)
{
    for (const auto* role : { "AXTextField", "AXTextArea", "AXComboBox" })
        EXPECT_EQ(failureOf([&] { TextInsertion::validateField(role, "AXSearchField", false); }), std::nullopt);
}

TEST_F(InsertionTest, TakesAnyElementThatAnswersForItsSelection)
{
    EXPECT_EQ(failureOf([] { TextInsertion::validateField("AXGroup", std::nullopt, true); }), std::nullopt);
    EXPECT_EQ(failureOf([] { TextInsertion::validateField(std::nullopt, std::nullopt, true); }), std::nullopt);
    EXPECT_EQ(failureOf([] { TextInsertion::validateField("AXGroup", std::nullopt, false); }), Case::noField);
    EXPECT_EQ(failureOf([] { TextInsertion::validateField(std::nullopt, std::nullopt, false); }), Case::noField);
}

TEST_F(InsertionTest, CapturesTheFocusedField)
{
    const auto target = capture();
    EXPECT_EQ(target.pid, editor_.processIdentifier());
    EXPECT_EQ(target.name, "Editor");
    EXPECT_EQ(target.bundleIdentifier, "org.example.editor");
    EXPECT_EQ(target.element, note_.handle());
    EXPECT_EQ(target.harness, std::nullopt);
    EXPECT_EQ(target.application.get(), &editor_);
    EXPECT_EQ(target.window, window_.handle());
}

TEST_F(InsertionTest, CapturesAFieldInAProgramWithoutANameOrAWindow)
{
    editor_.becomeAnother({});
    note_.fail(AccessibilityAttribute::window, AccessibilityError::attributeUnsupported);
    const auto target = capture();
    EXPECT_EQ(target.name, "your app");
    EXPECT_EQ(target.bundleIdentifier, std::nullopt);
    EXPECT_EQ(target.window, std::nullopt);
}

TEST_F(InsertionTest, NeedsPermissionFirstOfAll)
{
    desktop_.permissions.accessibility = false;
    desktop_.leaveAll();
    EXPECT_EQ(failureOf([&] { capture(); }), Case::permission);
    EXPECT_TRUE(desktop_.accessibility.calls.empty());
}

TEST_F(InsertionTest, CapturesNothingWhereNoOtherProgramIsInFront)
{
    desktop_.leaveAll();
    EXPECT_EQ(failureOf([&] { capture(); }), Case::noField);
    desktop_.bringToFront(desktop_.sorvane());
    EXPECT_EQ(failureOf([&] { capture(); }), Case::noField);
    EXPECT_EQ(failureOf([&] { insertion_.captureForRecording(); }), Case::noField);
}

TEST_F(InsertionTest, CapturesNothingWhereNothingHasTheFocus)
{
    note_.remove();
    EXPECT_EQ(failureOf([&] { capture(); }), Case::noField);
    editor_.element().answer(AccessibilityAttribute::focusedElement, std::string("Note"));
    EXPECT_EQ(failureOf([&] { capture(); }), Case::noField);
}

TEST_F(InsertionTest, CapturesNothingInAProgramThatDoesNotAnswer)
{
    editor_.freeze();
    EXPECT_EQ(failureOf([&] { capture(); }), Case::noField);
    EXPECT_EQ(elapsed(), DesktopServices::ordinaryAccessibilityTimeout);
}

TEST_F(InsertionTest, TakesARoleOfAnotherKindForNone)
{
    note_.answer(AccessibilityAttribute::role, true);
    note_.answer(AccessibilityAttribute::subrole, true);
    EXPECT_EQ(capture().element, note_.handle());
    note_.fail(AccessibilityAttribute::selectedTextRange, AccessibilityError::attributeUnsupported);
    EXPECT_EQ(failureOf([&] { capture(); }), Case::noField);
}

TEST_F(InsertionTest, DoesNotLookAtTheSelectionItself)
{
    auto& canvas = window_.addGroup("Canvas");
    canvas.focus();
    EXPECT_EQ(failureOf([&] { capture(); }), Case::noField);
    canvas.answer(AccessibilityAttribute::selectedTextRange, std::monostate());
    EXPECT_EQ(capture().element, canvas.handle());
}

TEST_F(InsertionTest, RecordsIntoTheFocusedField)
{
    EXPECT_EQ(insertion_.captureForRecording().element, note_.handle());
}

TEST_F(InsertionTest, RecordsWithoutAFieldWhereThereIsNone)
{
    window_.addGroup("Canvas").focus();
    const auto target = insertion_.captureForRecording();
    EXPECT_EQ(target.pid, editor_.processIdentifier());
    EXPECT_EQ(target.name, "Editor");
    EXPECT_EQ(target.bundleIdentifier, "org.example.editor");
    EXPECT_EQ(target.element, std::nullopt);
    EXPECT_EQ(target.harness, std::nullopt);
    EXPECT_EQ(target.application, nullptr);
    EXPECT_EQ(target.window, std::nullopt);
}

TEST_F(InsertionTest, DoesNotRecordIntoAPasswordField)
{
    window_.addPasswordField("Password").focus();
    EXPECT_EQ(failureOf([&] { insertion_.captureForRecording(); }), Case::secureField);
}

TEST_F(InsertionTest, DoesNotRecordWithoutPermission)
{
    desktop_.permissions.accessibility = false;
    EXPECT_EQ(failureOf([&] { insertion_.captureForRecording(); }), Case::permission);
}

TEST_F(InsertionTest, DoesNotRecordWhenTheFrontChangesMeanwhile)
{
    auto& canvas = window_.addGroup("Canvas");
    canvas.focus();
    canvas.onNextRead([&] { desktop_.launch({ .name = "Mail" }); });
    EXPECT_EQ(failureOf([&] { insertion_.captureForRecording(); }), Case::focusChanged);
    canvas.onNextRead([&] { desktop_.leaveAll(); });
    desktop_.bringToFront(editor_);
    EXPECT_EQ(failureOf([&] { insertion_.captureForRecording(); }), Case::focusChanged);
}

TEST_F(InsertionTest, SwitchesOnTheElementsOfAnElectronProgram)
{
    editor_.becomeAnother({ .name = "Editor", .isBuiltOnElectron = true });
    capture();
    EXPECT_EQ(desktop_.accessibility.changes(), (std::vector<std::string> { "write AXManualAccessibility true" }));
    EXPECT_EQ(desktop_.accessibility.calls.at(0),
        (DesktopFakes::AccessibilityCall { "read AXManualAccessibility", "Editor", 200ms }));
    EXPECT_EQ(desktop_.accessibility.calls.at(1).timeout, 200ms);
    insertion_.prepareAccessibility(editor_);
    EXPECT_EQ(desktop_.accessibility.changes().size(), 1U);
}

TEST_F(InsertionTest, LeavesOtherProgramsAsTheyAre)
{
    insertion_.prepareAccessibility(editor_);
    editor_.becomeAnother({ .isBuiltOnElectron = true });
    desktop_.permissions.accessibility = false;
    insertion_.prepareAccessibility(editor_);
    EXPECT_TRUE(desktop_.accessibility.calls.empty());
}

} // namespace
} // namespace Sorvane
