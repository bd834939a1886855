// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "DictationOnTheDesktop.h"
#include "WordErrors.h"
#include "X11/X11Pasteboard.h"

#include <PlatformSupport/Environment.h>
#include <PlatformSupport/SystemClock.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

namespace {

using DesktopLinux::OtherProgram;
namespace Attribute = DesktopServices::AccessibilityAttribute;

// A program with fields that are dictated into.
struct Destination {
    std::string form;
    std::vector<std::string> fields;
};

void PrintTo(const Destination& destination, std::ostream* out)
{
    *out << destination.form;
}

// Dictations into the programs of all toolkits, from the key to the words in the field.
class DictationIntoPrograms : public DictationOnTheDesktop, public testing::WithParamInterface<Destination> {
protected:
    explicit DictationIntoPrograms(const std::string& activationMode)
        : DictationOnTheDesktop(
            R"({"automaticallyCopy": false, "activationMode": ")" + activationMode + R"("})", GetParam().form)
    {
        users.ask("offer-text UTF8_STRING theirs");
        users.ask("copy");
    }

    // The first two seconds of a longer recording: the tests are not to take longer than that.
    static void speakFourWords()
    {
        const auto mouth = PlatformSupport::environmentVariable("DESKTOP_SESSION_MOUTH").value_or("");
        const auto command = "tail --bytes=+45 " SAMPLES_DIRECTORY "/shopping-list.wav | head --bytes=65600"
                             " | paplay --raw --rate=16000 --channels=1 --format=s16le --device="
            + mouth;
        EXPECT_EQ(runProgram({ "sh", "-c", command }).status, 0);
    }

    void expectTheWordsIn(const std::string& field)
    {
        const auto text = textIn(field);
        EXPECT_LE(wordErrors(spokenWords("Buy bread, olive oil"), spokenWords(text)), 1U) << field << ": " << text;
    }

    // The user goes to a field; waits until all the desktop knows.
    void goTo(const std::string& field)
    {
        EXPECT_EQ(form.ask("focus " + field), "done");
        while (!isAt(field)) { }
    }

    bool isAt(const std::string& field)
    {
        const auto element = focused(form);
        if (!element || field == "terminal")
            return element.has_value();
        if (field == "address")
            return text(*element, Attribute::title) == "Address and search bar";
        return text(*element, Attribute::description) == "A " + field + " for tests";
    }

    // The text has been on the clipboard, and the user's own is there again: that is the end of a dictation.
    void untilTheClipboardIsBack()
    {
        do {
            const auto before = clipboard.changeCount();
            loop.turnUntil([&] { return clipboard.changeCount() != before; });
        } while (users.ask("paste-text UTF8_STRING") != "theirs");
    }

    PlatformSupport::SystemClock clock;
    DesktopLinux::X11Pasteboard clipboard { usersConnection, loop.executor(), clock };
    OtherProgram users;
};

class DictationByToggling : public DictationIntoPrograms {
protected:
    DictationByToggling()
        : DictationIntoPrograms("Press to start / stop")
    {
    }
};

TEST_P(DictationByToggling, PutsTheWordsIntoAField)
{
    const auto field = GetParam().fields.front();
    goTo(field);
    pressShortcut();
    untilListening();
    speakFourWords();
    pressShortcut();
    untilTheClipboardIsBack();
    expectTheWordsIn(field);
}

class DictationByHolding : public DictationIntoPrograms {
protected:
    DictationByHolding()
        : DictationIntoPrograms("Hold to speak")
    {
    }
};

TEST_P(DictationByHolding, PutsTheWordsIntoEachField)
{
    for (const auto& field : GetParam().fields) {
        goTo(field);
        holdShortcut();
        untilListening();
        speakFourWords();
        releaseShortcut();
        untilTheClipboardIsBack();
        expectTheWordsIn(field);
    }
}

std::vector<Destination> destinations()
{
    const std::string forms = FORMS_FOLDER "/";
    return {
        { forms + "gtk3", { "page", "line" } },
        { forms + "gtk4", { "page", "line" } },
        { forms + "qt-widgets", { "page", "line" } },
        { forms + "qt-quick", { "page", "line" } },
        { forms + "terminal", { "terminal" } },
        { forms + "chromium", { "page", "rich", "line", "address" } },
    };
}

std::string nameOf(const testing::TestParamInfo<Destination>& destination)
{
    auto name = std::filesystem::path(destination.param.form).filename().string();
    std::erase(name, '-');
    return name;
}

INSTANTIATE_TEST_SUITE_P(, DictationByToggling, testing::ValuesIn(destinations()), nameOf);
INSTANTIATE_TEST_SUITE_P(, DictationByHolding, testing::ValuesIn(destinations()), nameOf);

} // namespace
