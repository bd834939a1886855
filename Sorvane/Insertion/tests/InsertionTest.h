// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopFakes/FakeDesktop.h>
#include <DesktopServices/AccessibilityNames.h>
#include <PlatformSupport/Task.h>
#include <Sorvane/TextInsertion.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace Sorvane {

namespace AccessibilityAttribute = DesktopServices::AccessibilityAttribute;
using DesktopServices::AccessibilityError;
using namespace std::chrono_literals;

// An editor in front, and a note in it that has the focus.
class InsertionTest : public testing::Test {
protected:
    using Case = InsertionError::Case;
    using Clipboard = TextInsertion::Clipboard;
    using HarnessSearch = TextInsertion::HarnessSearch;
    using Target = TextInsertion::Target;

    PlatformSupport::HandTurnedLoop loop_;
    PlatformSupport::HandTurnedClock clock_ { loop_ };
    DesktopFakes::FakeDesktop desktop_ { loop_, clock_ };
    DesktopFakes::FakeApplication& editor_
        = desktop_.launch({ .name = "Editor", .bundleIdentifier = "org.example.editor" });
    DesktopFakes::FakeElement& window_ = editor_.openWindow("Shopping");
    DesktopFakes::FakeElement& note_ = window_.addTextArea("Note");
    TextInsertion insertion_ { desktop_.services(), clock_ };

    InsertionTest() { note_.focus(); }

    Target capture() { return insertion_.capture(HarnessSearch::No); }

    // Which InsertionError the function throws, if any.
    template <typename Function> static std::optional<Case> failureOf(Function function)
    {
        try {
            function();
        } catch (const InsertionError& error) {
            return error.which();
        }
        return std::nullopt;
    }

    // What a captured field's proof says now.
    std::optional<Case> proofFailure(const Target& target)
    {
        return failureOf([&] { insertion_.validateDestination(target); });
    }

    std::string lastLogEntry() const
    {
        return desktop_.diagnosticLog.entries.empty() ? "" : desktop_.diagnosticLog.entries.back().text;
    }

    // The time that has gone by since the test began.
    auto elapsed() const { return clock_.now().time_since_epoch(); }
};

} // namespace Sorvane
