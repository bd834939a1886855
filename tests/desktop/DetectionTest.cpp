// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "RealDesktop.h"

#include <DesktopServices/AccessibilityNames.h>
#include <Sorvane/AutomaticModeDetection.h>
#include <Sorvane/TextInsertion.h>

#include <gtest/gtest.h>

#include <chrono>
#include <iostream>

namespace Sorvane {

namespace {

namespace Attribute = DesktopServices::AccessibilityAttribute;
using DesktopServices::AccessibilityElement;

// A message that is being written in a browser, on one site or another.
class AutomaticModeInABrowser : public RealDesktop, public testing::Test {
protected:
    AutomaticModeInABrowser()
        : RealDesktop(FORMS_FOLDER "/webmail")
    {
        untilAccessible();
    }

    // The user goes to a field of the page or frame at the address.
    void goTo(const std::string& address, const std::string& field)
    {
        EXPECT_EQ(form.ask("focus " + field), "done");
        untilFocusIsDescribedAs("A " + field + " at " + address);
    }

    TranscriptMode mode() { return mode(insertion.captureForRecording()); }

    TranscriptMode mode(const InsertionTarget& target)
    {
        const auto start = std::chrono::steady_clock::now();
        const auto mode = AutomaticModeDetection::captureMode(target, bus.accessibility(), clock);
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
        std::cout << "detected in " << taken.count() << " ms\n";
        return mode;
    }

    // A browser that is busy just then is not waited for, and then it is no e-mail.
    void untilEMail()
    {
        while (mode() != TranscriptMode::email)
            loop.turn();
    }

    void openAt(const std::string& address, const std::string& field)
    {
        EXPECT_EQ(form.ask("open " + address), "done");
        goTo(address, field);
    }

    void openFrameAt(const std::string& address, const std::string& addressOfFrame)
    {
        EXPECT_EQ(form.ask("open " + address), "done");
        goTo(addressOfFrame, "body");
    }

    TextInsertion insertion { services(), clock };
};

TEST_F(AutomaticModeInABrowser, IsEMailInTheBodyOfAMessage)
{
    openAt("https://mail.google.com/", "body");
    untilEMail();
    openAt("https://outlook.live.com/mail/0/", "body");
    untilEMail();
    openFrameAt("https://mail.google.com/around/mail.google.com", "https://mail.google.com/framed");
    untilEMail();
    openAt("https://mail.google.com/", "subject");
    EXPECT_EQ(mode(), TranscriptMode::clean);
}

TEST_F(AutomaticModeInABrowser, IsCleanWhereThePageIsNotSurelyAMailSite)
{
    for (const auto* address :
        { "https://mail.google.com:8443/", "http://outlook.office.com/", "https://mail.example.com/" }) {
        openAt(address, "body");
        EXPECT_EQ(mode(), TranscriptMode::clean) << address;
    }
    openFrameAt("https://mail.google.com/around/mail.example.com", "https://mail.example.com/framed");
    EXPECT_EQ(mode(), TranscriptMode::clean);
    openFrameAt("https://mail.example.com/around/mail.google.com", "https://mail.google.com/framed");
    EXPECT_EQ(mode(), TranscriptMode::clean);
}

TEST_F(AutomaticModeInABrowser, IsCleanWhereTheFocusHasLeft)
{
    openAt("https://mail.google.com/", "body");
    untilEMail();
    const auto target = insertion.captureForRecording();
    goTo("https://mail.google.com/", "subject");
    EXPECT_EQ(mode(target), TranscriptMode::clean);
}

TEST_F(AutomaticModeInABrowser, IsCleanInABrowserThatIsFrozen)
{
    openAt("https://mail.google.com/", "body");
    untilEMail();
    const auto target = insertion.captureForRecording();
    form.freeze();
    EXPECT_EQ(mode(target), TranscriptMode::clean);
}

// An agent that runs in a terminal.
class HarnessInATerminal : public RealDesktop, public testing::Test {
protected:
    HarnessInATerminal()
        : RealDesktop(FORMS_FOLDER "/terminal")
    {
        untilAccessible();
    }

    std::optional<CodingHarness> harnessTitled(const std::string& title)
    {
        EXPECT_EQ(form.ask("title " + title), "done");
        while (!windowTitle().ends_with(title) || !isInFront(form))
            loop.turn();
        const auto target = insertion.captureForRecording();
        EXPECT_TRUE(target.element);
        return target.harness;
    }

    std::string windowTitle()
    {
        const auto program = bus.accessibility().applicationElement(form.process());
        const auto window = program.read(Attribute::focusedWindow).as<AccessibilityElement>();
        return window ? window->read(Attribute::title).as<std::string>().value_or("") : "";
    }

    TextInsertion insertion { services(), clock };
};

TEST_F(HarnessInATerminal, IsToldByItsTitle)
{
    EXPECT_EQ(harnessTitled("claude code · project"), CodingHarness::claudeCode);
    EXPECT_EQ(harnessTitled("Codex | notes"), CodingHarness::codex);
    EXPECT_EQ(harnessTitled("claude codec"), std::nullopt);
}

} // namespace

} // namespace Sorvane
