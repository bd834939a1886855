// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InsertionTest.h"

#include <Sorvane/AutomaticModeDetection.h>

namespace Sorvane {
namespace {

using AutomaticModeDetection::Context;
using AutomaticModeDetection::resolve;
using DesktopFakes::FakeElement;

const Context bodyInMail { .bundleIdentifier = "com.apple.mail", .role = "AXTextArea", .labels = { "Message body" } };
const Context bodyOnSite { .bundleIdentifier = "com.google.Chrome",
    .role = "AXTextField",
    .labels = { "Email Body" },
    .host = "mail.google.com" };

TEST(AutomaticMode, FindsTheBodyOfAMessage)
{
    EXPECT_EQ(resolve(bodyInMail), TranscriptMode::email);
    EXPECT_EQ(resolve(bodyOnSite), TranscriptMode::email);
}

TEST(AutomaticMode, NeedsAnApplicationAndARole)
{
    auto context = bodyInMail;
    context.bundleIdentifier.reset();
    EXPECT_EQ(resolve(context), TranscriptMode::clean);
    context = bodyInMail;
    context.role.reset();
    EXPECT_EQ(resolve(context), TranscriptMode::clean);
    context.role = "AXComboBox";
    EXPECT_EQ(resolve(context), TranscriptMode::clean);
}

TEST(AutomaticMode, NeedsABodyThatIsNamedSo)
{
    auto context = bodyInMail;
    for (const auto* label : { "message body", " \tMESSAGE BODY\n", "Email body", "\u00A0email body" }) {
        context.labels = { "something", label };
        EXPECT_EQ(resolve(context), TranscriptMode::email) << label;
    }
    for (const auto* label : { "the message body", "body", "" }) {
        context.labels = { label };
        EXPECT_EQ(resolve(context), TranscriptMode::clean) << label;
    }
    context.labels.clear();
    EXPECT_EQ(resolve(context), TranscriptMode::clean);
}

TEST(AutomaticMode, ExcludesOtherFieldsFirst)
{
    auto context = bodyInMail;
    for (const auto* label : { "Subject", "To", "Cc", "Bcc", "Recipients", "Search", " search mail " }) {
        context.labels = { "message body", label };
        EXPECT_EQ(resolve(context), TranscriptMode::clean) << label;
    }
}

TEST(AutomaticMode, KnowsMailProgramsAndMailSites)
{
    auto mail = bodyInMail;
    for (const auto* identifier : { "com.apple.mail", "com.microsoft.Outlook", "thunderbird", "org.gnome.Evolution",
             "org.gnome.Geary", "org.kde.kmail2" }) {
        mail.bundleIdentifier = identifier;
        EXPECT_EQ(resolve(mail), TranscriptMode::email) << identifier;
    }
    auto site = bodyOnSite;
    for (const auto* host : { "mail.google.com", "outlook.live.com", "outlook.office.com", "Outlook.Office365.com" }) {
        site.host = host;
        EXPECT_EQ(resolve(site), TranscriptMode::email) << host;
    }
    for (const auto* identifier : { "com.apple.Safari", "com.google.Chrome", "com.google.Chrome.canary",
             "org.chromium.Chromium", "com.microsoft.edgemac", "com.brave.Browser", "company.thebrowser.Browser",
             "org.mozilla.firefox", "firefox-esr", "chromium" }) {
        site.bundleIdentifier = identifier;
        EXPECT_EQ(resolve(site), TranscriptMode::email) << identifier;
    }
}

TEST(AutomaticMode, IsCleanEverywhereElse)
{
    auto context = bodyOnSite;
    context.host = "example.org";
    EXPECT_EQ(resolve(context), TranscriptMode::clean);
    context.host.reset();
    EXPECT_EQ(resolve(context), TranscriptMode::clean);
    context = bodyOnSite;
    context.bundleIdentifier = "org.example.editor";
    EXPECT_EQ(resolve(context), TranscriptMode::clean);
}

// A field in a program's window, which is captured and then looked at.
class ModeCaptureTest : public InsertionTest {
protected:
    FakeElement& fieldIn(const std::string& bundleIdentifier, const std::string& title)
    {
        auto& window = desktop_.launch({ .bundleIdentifier = bundleIdentifier }).openWindow("Message body");
        auto& field = window.addTextArea(title);
        field.focus();
        return field;
    }

    // ... within a page, or a page in a page.
    FakeElement& fieldAt(const std::vector<std::string>& urls, int groups = 1)
    {
        auto* around = &desktop_.launch({ .bundleIdentifier = "firefox-esr" }).openWindow("Inbox");
        for (const auto& url : urls)
            around = &around->addWebArea(url);
        for (int i = 0; i < groups; ++i)
            around = &around->addGroup();
        auto& field = around->addTextArea("Message Body");
        field.focus();
        return field;
    }

    TranscriptMode mode(const std::optional<InsertionTarget>& target)
    {
        desktop_.accessibility.calls.clear();
        return AutomaticModeDetection::captureMode(target, desktop_.accessibility, clock_);
    }
    TranscriptMode mode() { return mode(capture()); }
};

TEST_F(ModeCaptureTest, LooksAtNoOtherApplication)
{
    note_.retitle("message body");
    EXPECT_EQ(mode(), TranscriptMode::clean);
    EXPECT_EQ(mode(std::nullopt), TranscriptMode::clean);
    auto target = capture();
    target.bundleIdentifier.reset();
    EXPECT_EQ(mode(target), TranscriptMode::clean);
    target = capture();
    target.bundleIdentifier = "com.apple.mail";
    target.element.reset();
    EXPECT_EQ(mode(target), TranscriptMode::clean);
    EXPECT_TRUE(desktop_.accessibility.calls.empty());
}

TEST_F(ModeCaptureTest, ReadsAMailProgramsField)
{
    fieldIn("com.apple.mail", "Message body");
    EXPECT_EQ(mode(), TranscriptMode::email);
    EXPECT_EQ(desktop_.accessibility.readsOf(AccessibilityAttribute::parent), 0U);
    for (const auto& call : desktop_.accessibility.calls)
        EXPECT_EQ(call.timeout, 15ms) << call.what;
}

TEST_F(ModeCaptureTest, ReadsThreeKindsOfLabels)
{
    auto& field = fieldIn("thunderbird", "");
    auto& window = *field.window();
    window.add({ .role = "AXTextArea", .description = "message body" }).focus();
    EXPECT_EQ(mode(), TranscriptMode::email);
    window.add({ .role = "AXTextArea", .identifier = "message body" }).focus();
    EXPECT_EQ(mode(), TranscriptMode::email);
    window.add({ .role = "AXTextArea", .title = "Subject", .description = "message body" }).focus();
    EXPECT_EQ(mode(), TranscriptMode::clean);
}

TEST_F(ModeCaptureTest, IgnoresLabelsOfMoreThanAHundredAndTwentyCharacters)
{
    const std::string padded = "message body" + std::string(108, ' ');
    auto& field = fieldIn("com.apple.mail", padded);
    EXPECT_EQ(mode(), TranscriptMode::email);
    field.retitle(padded + " ");
    EXPECT_EQ(mode(), TranscriptMode::clean);
    field.answer(AccessibilityAttribute::title, true);
    EXPECT_EQ(mode(), TranscriptMode::clean);
}

TEST_F(ModeCaptureTest, DoesNotJudgeAFieldThatHasLostTheFocus)
{
    fieldIn("com.apple.mail", "Message body");
    const auto target = capture();
    desktop_.workspace.find(target.pid)->focusedWindow()->addTextField().focus();
    EXPECT_EQ(mode(target), TranscriptMode::clean);
}

TEST_F(ModeCaptureTest, FindsThePageAroundAField)
{
    fieldAt({ "https://mail.google.com/mail/u/0/" });
    EXPECT_EQ(mode(), TranscriptMode::email);
}

TEST_F(ModeCaptureTest, NeedsASecurePage)
{
    for (const auto* url :
        { "http://mail.google.com/", "https://mail.google.com:8443/", "https:///", "https://example.org/" }) {
        fieldAt({ url });
        EXPECT_EQ(mode(), TranscriptMode::clean) << url;
    }
    fieldAt({ "HTTPS://MAIL.GOOGLE.COM:443/" });
    EXPECT_EQ(mode(), TranscriptMode::email);
    fieldAt({});
    EXPECT_EQ(mode(), TranscriptMode::clean);
}

TEST_F(ModeCaptureTest, NeedsALocationThatIsOne)
{
    auto& page = desktop_.launch({ .bundleIdentifier = "firefox-esr" }).openWindow("Inbox").addWebArea("");
    page.addTextArea("Message Body").focus();
    EXPECT_EQ(mode(), TranscriptMode::clean);
    page.answer(AccessibilityAttribute::url, std::string("https://mail.google.com/"));
    EXPECT_EQ(mode(), TranscriptMode::clean);
}

TEST_F(ModeCaptureTest, IsUnclearAboutAPageWithinAnotherSites)
{
    fieldAt({ "https://mail.google.com/", "https://outlook.live.com/" });
    EXPECT_EQ(mode(), TranscriptMode::clean);
    fieldAt({ "https://mail.google.com/", "https://mail.google.com/frame" });
    EXPECT_EQ(mode(), TranscriptMode::email);
    fieldAt({ "https://mail.google.com/", "http://mail.google.com/" });
    EXPECT_EQ(mode(), TranscriptMode::clean);
}

TEST_F(ModeCaptureTest, WalksSixteenElements)
{
    fieldAt({ "https://mail.google.com/" }, 13); // with the field, the page and the window: 16
    EXPECT_EQ(mode(), TranscriptMode::email);
    fieldAt({ "https://mail.google.com/" }, 14);
    EXPECT_EQ(mode(), TranscriptMode::clean);
}

TEST_F(ModeCaptureTest, DoesNotWalkInACircle)
{
    auto& field = fieldAt({ "https://mail.google.com/" });
    field.answer(AccessibilityAttribute::parent, field);
    EXPECT_EQ(mode(), TranscriptMode::clean);
    EXPECT_EQ(desktop_.accessibility.readsOf(AccessibilityAttribute::parent), 1U);
}

TEST_F(ModeCaptureTest, EndsWhereThereIsNoParent)
{
    auto& field = fieldAt({ "https://mail.google.com/" });
    field.fail(AccessibilityAttribute::parent, AccessibilityError::noValue);
    EXPECT_EQ(mode(), TranscriptMode::clean);
}

TEST_F(ModeCaptureTest, PassesElementsWithoutARole)
{
    auto& field = fieldAt({ "https://mail.google.com/" }, 0);
    auto& group = field.window()->addGroup();
    group.fail(AccessibilityAttribute::role, AccessibilityError::noValue);
    auto& page = group.addWebArea("https://mail.google.com/");
    page.addTextArea("message body").focus();
    EXPECT_EQ(mode(), TranscriptMode::email);
}

TEST_F(ModeCaptureTest, TakesFifteenMillisecondsPerReadOfASlowProgram)
{
    auto& field = fieldIn("com.apple.mail", "Message body");
    field.answerAfter(AccessibilityAttribute::identifier, 1s);
    const auto target = capture();
    const auto before = elapsed();
    EXPECT_EQ(mode(target), TranscriptMode::email);
    EXPECT_EQ(elapsed() - before, 15ms);
}

TEST_F(ModeCaptureTest, EndsWhenItsTimeIsOver)
{
    auto& browser = desktop_.launch({ .bundleIdentifier = "firefox-esr" });
    auto& page = browser.openWindow("Inbox").addWebArea("https://mail.google.com/");
    auto& field = page.addTextArea("Message Body");
    field.focus();
    const auto target = capture();
    for (const auto attribute : { AccessibilityAttribute::title, AccessibilityAttribute::description,
             AccessibilityAttribute::identifier, AccessibilityAttribute::role, AccessibilityAttribute::parent })
        field.answerAfter(attribute, 14ms);
    browser.element().answerAfter(AccessibilityAttribute::focusedElement, 14ms);
    page.answerAfter(AccessibilityAttribute::role, 14ms);
    const auto start = elapsed();
    EXPECT_EQ(mode(target), TranscriptMode::email);
    EXPECT_EQ(elapsed() - start, 8 * 14ms); // the field's role is read twice

    page.answerAfter(AccessibilityAttribute::url, 14ms);
    const auto secondStart = elapsed();
    EXPECT_EQ(mode(target), TranscriptMode::clean);
    EXPECT_EQ(elapsed() - secondStart, 120ms);
    EXPECT_EQ(desktop_.accessibility.calls.back().timeout, 8ms);
}

TEST_F(ModeCaptureTest, IsHeldUpOnceByAFrozenProgram)
{
    fieldIn("com.apple.mail", "Message body");
    const auto target = capture();
    desktop_.workspace.find(target.pid)->freeze();
    EXPECT_EQ(mode(target), TranscriptMode::clean);
    EXPECT_EQ(elapsed(), 15ms);
}

} // namespace
} // namespace Sorvane
