// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "DictationOnTheDesktop.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// Looked for by programs when they start.
struct Tray {
    DesktopLinux::OtherProgram tray { TRAY_PROGRAM };
};

// Fields of all toolkits that take no dictation.
class RefusedDictation : protected Tray, public DictationOnTheDesktop, public testing::WithParamInterface<std::string> {
protected:
    RefusedDictation()
        : DictationOnTheDesktop("{}", FORMS_FOLDER "/" + GetParam())
    {
    }
};

TEST_P(RefusedDictation, IsExplainedInAPasswordField)
{
    focus(form, "password");
    pressShortcut();
    EXPECT_EQ(tray.ask("told"), "Dictation is unavailable in password fields.");
    EXPECT_FALSE(isAnybodyListening());
    EXPECT_EQ(form.ask("read password"), "[]");
}

INSTANTIATE_TEST_SUITE_P(
    , RefusedDictation, testing::Values("gtk3", "gtk4", "qt-widgets", "qt-quick", "chromium"), [](const auto& toolkit) {
        auto name = toolkit.param;
        std::erase(name, '-');
        return name;
    });

// A field that cannot be changed is no field: the words go to the clipboard.
class DictationIntoAFixedField : public DictationOnTheDesktop {
protected:
    DictationIntoAFixedField()
        : DictationOnTheDesktop("{}", FORMS_FOLDER "/qt-widgets")
    {
    }

    DesktopLinux::OtherProgram users;
};

TEST_F(DictationIntoAFixedField, IsCopied)
{
    focus(form, "fixed");
    pressShortcut();
    untilListening();
    speak("shopping-list");
    pressShortcut();
    std::string copied;
    while ((copied = users.ask("paste-text UTF8_STRING")) == "refused") { }
    EXPECT_LE(errors("shopping-list", copied), 2U) << copied;
    EXPECT_EQ(form.ask("read fixed"), "[]");
}

} // namespace
