// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InsertionTest.h"

namespace Sorvane {
namespace {

using DesktopFakes::FakeElement;
using DesktopServices::AccessibilityRange;

// The editor's note, captured; then something happens to it.
struct Destination {
    DesktopFakes::FakeDesktop& desktop;
    DesktopFakes::FakeApplication& editor;
    FakeElement& window;
    FakeElement& note;
    InsertionTarget& target;
};

struct Mishap {
    const char* name;
    void (*happen)(const Destination&);
    InsertionError::Case failure;
    const char* logEntry; // nothing where the failure is not logged
};

constexpr auto unavailable = InsertionError::Case::unavailableTarget;

// In the order of the proof.
const Mishap mishaps[] = {
    { "PermissionIsTakenBack", [](const Destination& d) { d.desktop.permissions.accessibility = false; },
        InsertionError::Case::permission, nullptr },
    { "NoApplicationWasCaptured", [](const Destination& d) { d.target.application = nullptr; }, unavailable,
        "missing captured application, AX code 0" },
    { "TheApplicationQuits", [](const Destination& d) { d.editor.quit(); }, unavailable,
        "captured application terminated, AX code 0" },
    { "TheProcessIsAnother", [](const Destination& d) { d.target.pid += 1; }, unavailable,
        "captured application identity changed, AX code 0" },
    { "TheIdentifierChanges",
        [](const Destination& d) { d.editor.becomeAnother({ .bundleIdentifier = "org.example.other" }); }, unavailable,
        "captured application identity changed, AX code 0" },
    { "TheIdentifierIsGone", [](const Destination& d) { d.editor.becomeAnother({}); }, unavailable,
        "captured application identity changed, AX code 0" },
    { "NoFieldWasCaptured", [](const Destination& d) { d.target.element.reset(); }, unavailable,
        "missing captured field, AX code 0" },
    { "NobodyOwnsTheField",
        [](const Destination& d) { d.note.claimProcess({ .error = AccessibilityError::cannotComplete }); }, unavailable,
        "field process identity, AX code -25204" },
    { "AnotherProcessOwnsTheField", [](const Destination& d) { d.note.claimProcess({ .identifier = 7 }); }, unavailable,
        "field process identity, AX code 0" },
    { "TheFieldIsGone", [](const Destination& d) { d.note.remove(); }, unavailable, "field role, AX code -25202" },
    { "TheApplicationFreezes", [](const Destination& d) { d.editor.freeze(); }, unavailable,
        "field role, AX code -25204" },
    { "TheRoleIsNoText", [](const Destination& d) { d.note.answer(AccessibilityAttribute::role, true); }, unavailable,
        "field role, AX code 0" },
    { "TheSubroleComesTooLate",
        [](const Destination& d) { d.note.answerAfter(AccessibilityAttribute::subrole, 150ms); }, unavailable,
        "field subrole, AX code -25204" },
    { "TheFieldHidesWhatIsTyped",
        [](const Destination& d) { d.note.answer(AccessibilityAttribute::subrole, std::string("AXSecureTextField")); },
        InsertionError::Case::secureField, nullptr },
    { "TheFieldBecomesSomethingElse", [](const Destination& d) { d.note.changeRole("AXButton"); },
        InsertionError::Case::noField, nullptr },
    { "TheFieldIsDisabled", [](const Destination& d) { d.note.disable(); }, unavailable, "field disabled, AX code 0" },
    { "TheFieldHasNoWindow",
        [](const Destination& d) { d.note.fail(AccessibilityAttribute::window, AccessibilityError::noValue); },
        unavailable, "field window lookup, AX code -25212" },
    { "TheWindowIsNoElement",
        [](const Destination& d) { d.note.answer(AccessibilityAttribute::window, std::string("Shopping")); },
        unavailable, "field window lookup, AX code 0" },
    { "TheFieldMovesToAnotherWindow", [](const Destination& d) { d.note.moveInto(d.editor.openWindow("Other")); },
        unavailable, "field window identity changed, AX code 0" },
    { "TheWindowIsNoWindow",
        [](const Destination& d) { d.window.answer(AccessibilityAttribute::role, std::string("AXSheet")); },
        unavailable, "captured window role, AX code 0" },
    { "TheWindowDoesNotSayWhatItIs",
        [](const Destination& d) {
            d.window.fail(AccessibilityAttribute::role, AccessibilityError::attributeUnsupported);
        },
        unavailable, "captured window role, AX code -25205" },
};

class MishapTest : public InsertionTest, public testing::WithParamInterface<Mishap> {
protected:
    Target target_ = capture();
    Destination destination_ { desktop_, editor_, window_, note_, target_ };
};

TEST_P(MishapTest, IsNoticed)
{
    GetParam().happen(destination_);
    EXPECT_EQ(proofFailure(target_), GetParam().failure);
    const std::string entry = GetParam().logEntry
        ? std::string("Original destination validation failed: ") + GetParam().logEntry
        : std::string();
    EXPECT_EQ(lastLogEntry(), entry);
}

INSTANTIATE_TEST_SUITE_P(
    , MishapTest, testing::ValuesIn(mishaps), [](const auto& mishap) { return std::string(mishap.param.name); });

TEST_F(InsertionTest, ProvesAFieldThatIsAsItWas)
{
    const auto target = capture();
    desktop_.accessibility.calls.clear();
    EXPECT_EQ(proofFailure(target), std::nullopt);
    std::vector<std::string> asked;
    for (const auto& call : desktop_.accessibility.calls) {
        asked.push_back(call.what + " of " + call.title);
        EXPECT_EQ(call.timeout, 150ms);
    }
    EXPECT_EQ(asked,
        (std::vector<std::string> { "process of Note", "read AXRole of Note", "read AXSubrole of Note",
            "read AXSelectedTextRange of Note", "read AXEnabled of Note", "read AXWindow of Note",
            "read AXRole of Shopping" }));
    EXPECT_TRUE(desktop_.diagnosticLog.entries.empty());
}

TEST_F(InsertionTest, ProvesFieldsWithoutASubrole)
{
    const auto target = capture();
    for (const auto error : { AccessibilityError::attributeUnsupported, AccessibilityError::noValue }) {
        note_.fail(AccessibilityAttribute::subrole, error);
        EXPECT_EQ(proofFailure(target), std::nullopt);
    }
    note_.fail(AccessibilityAttribute::subrole, AccessibilityError::failure);
    EXPECT_EQ(proofFailure(target), Case::unavailableTarget);
}

TEST_F(InsertionTest, ProvesFieldsThatDoNotSayWhetherTheyAreEnabled)
{
    const auto target = capture();
    note_.fail(AccessibilityAttribute::enabled, AccessibilityError::attributeUnsupported);
    EXPECT_EQ(proofFailure(target), std::nullopt);
    note_.answer(AccessibilityAttribute::enabled, std::string("no"));
    EXPECT_EQ(proofFailure(target), std::nullopt);
}

TEST_F(InsertionTest, AsksForNoWindowWhereNoneWasCaptured)
{
    auto target = capture();
    target.window.reset();
    desktop_.accessibility.calls.clear();
    window_.answer(AccessibilityAttribute::role, std::string("AXSheet"));
    EXPECT_EQ(proofFailure(target), std::nullopt);
    EXPECT_EQ(desktop_.accessibility.readsOf(AccessibilityAttribute::window), 0U);
}

TEST_F(InsertionTest, ProvesFieldsInAProgramWithoutAnIdentifier)
{
    editor_.becomeAnother({});
    EXPECT_EQ(proofFailure(capture()), std::nullopt);
}

TEST_F(InsertionTest, SaysOnlyTheFirstThingThatIsAmiss)
{
    auto target = capture();
    note_.disable();
    note_.moveInto(editor_.openWindow("Other"));
    target.bundleIdentifier = "org.example.other";
    EXPECT_EQ(proofFailure(target), Case::unavailableTarget);
    EXPECT_EQ(desktop_.diagnosticLog.entries,
        (std::vector<DesktopFakes::FakeDiagnosticLog::Entry> { { "com.nerith.sorvane", "Insertion",
            "Original destination validation failed: captured application identity changed, AX code 0" } }));
}

TEST_F(InsertionTest, IsHeldUpOnceByAFrozenProgram)
{
    const auto target = capture();
    editor_.freeze();
    EXPECT_EQ(proofFailure(target), Case::unavailableTarget);
    EXPECT_EQ(elapsed(), 150ms);
}

TEST_F(InsertionTest, KnowsThatAProgramStartedAgainIsAnother)
{
    const auto target = capture();
    editor_.quit();
    desktop_.launch({ .name = "Editor", .bundleIdentifier = "org.example.editor" });
    EXPECT_EQ(proofFailure(target), Case::unavailableTarget);
    EXPECT_EQ(lastLogEntry(), "Original destination validation failed: captured application terminated, AX code 0");
}

TEST_F(InsertionTest, FindsTheFieldFocused)
{
    EXPECT_TRUE(insertion_.destinationIsFocused(capture()));
    EXPECT_EQ(desktop_.accessibility.calls.back(),
        (DesktopFakes::AccessibilityCall { "read AXFocusedWindow", "Editor", 150ms }));
}

TEST_F(InsertionTest, FindsAFieldUnfocusedUnlessAllIsAsItWas)
{
    const auto target = capture();
    const auto isFocused = [&] { return insertion_.destinationIsFocused(target); };
    desktop_.leaveAll();
    EXPECT_FALSE(isFocused());
    desktop_.bringToFront(desktop_.sorvane());
    EXPECT_FALSE(isFocused());
    desktop_.clickInto(window_.addTextField());
    EXPECT_FALSE(isFocused());
    desktop_.clickInto(note_);
    EXPECT_TRUE(isFocused());
    editor_.element().answer(AccessibilityAttribute::focusedWindow, editor_.openWindow("Other"));
    note_.focus();
    EXPECT_FALSE(isFocused());
}

TEST_F(InsertionTest, AsksForTheFocusedWindowOnlyWhereOneWasCaptured)
{
    auto target = capture();
    target.window.reset();
    editor_.element().fail(AccessibilityAttribute::focusedWindow, AccessibilityError::noValue);
    EXPECT_TRUE(insertion_.destinationIsFocused(target));
    target.element.reset();
    EXPECT_FALSE(insertion_.destinationIsFocused(target));
}

} // namespace
} // namespace Sorvane
