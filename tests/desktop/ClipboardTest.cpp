// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InsertionOnTheDesktop.h"

#include <vector>

namespace Sorvane {

namespace {

// What becomes of what the user had copied when a text was inserted.
class ClipboardOnTheDesktop : public InsertionOnTheDesktop {
protected:
    // Each as "TARGET TYPE FORMAT SIZE".
    using Offers = std::vector<std::string>;

    void copy(const Offers& offers)
    {
        for (const auto& offer : offers)
            other.ask("offer " + offer);
        other.ask("copy");
    }

    // What a program that pastes gets, by the form's name.
    std::string pasted(const std::string& name) { return serve(reader, "paste " + name); }

    void expectGivenBack(const Offers& offers)
    {
        copy(offers);
        std::vector<std::string> before;
        for (const auto& offer : offers)
            before.push_back(pasted(nameIn(offer)));
        speakInto("line");
        insert("spoken");
        EXPECT_EQ(form.ask("read line"), "[spoken]");
        EXPECT_TRUE(log.entries.empty()); // the form took it
        for (size_t i = 0; i < offers.size(); ++i)
            EXPECT_EQ(pasted(nameIn(offers[i])), before[i]);
    }

    // Until the form has pasted: the insertion still waits.
    void untilPasted(const std::string& field, const PlatformSupport::Task<>& task)
    {
        while (!task.isFinished() && serve(form, "read " + field) == "[]") { }
    }

    OtherProgram reader;

private:
    static std::string nameIn(const std::string& offer) { return offer.substr(0, offer.find(' ')); }
};

TEST_F(ClipboardOnTheDesktop, GivesBackTextInAllItsForms)
{
    expectGivenBack({ "UTF8_STRING UTF8_STRING 8 300", "STRING STRING 8 300", "TEXT COMPOUND_TEXT 8 300",
        "text/html text/html 8 5000", "text/rtf text/rtf 8 4000", "saved~as~text saved~as~html 8 20",
        "text/x-origin saved~as~text 8 20", "LENGTH INTEGER 32 4",
        "x-kde-passwordManagerHint x-kde-passwordManagerHint 8 6" });
}

TEST_F(ClipboardOnTheDesktop, GivesBackALargePicture)
{
    expectGivenBack({ "image/png image/png 8 10485760", "image/bmp image/bmp 8 1000000" });
}

TEST_F(ClipboardOnTheDesktop, GivesBackFiles)
{
    expectGivenBack({ "text/uri-list text/uri-list 8 200",
        "x-special/gnome-copied-files x-special/gnome-copied-files 8 200", "UTF8_STRING UTF8_STRING 8 190" });
}

// It makes each of the many forms of the picture when it is asked.
TEST_F(ClipboardOnTheDesktop, GivesBackThePictureOfARealProgram)
{
    OtherProgram painter { FORM_PROGRAM };
    painter.ask("copy picture");
    painter.ask("minimise window");
    const auto before = serve(reader, "paste image/png");
    speakInto("line");
    insert("spoken");
    EXPECT_EQ(form.ask("read line"), "[spoken]");
    painter.kill();
    EXPECT_EQ(pasted("image/png"), before);
    EXPECT_NE(pasted("image/bmp"), "refused");
}

TEST_F(ClipboardOnTheDesktop, LeavesAnEmptyClipboardEmpty)
{
    speakInto("line");
    insert("spoken");
    EXPECT_EQ(form.ask("read line"), "[spoken]");
    EXPECT_EQ(pasted("UTF8_STRING"), "refused");
}

TEST_F(ClipboardOnTheDesktop, LeavesWhatIsCopiedWhileTheTextIsPasted)
{
    copy({ "UTF8_STRING UTF8_STRING 8 10" });
    speakInto("line");
    const auto task = startInserting("spoken");
    untilPasted("line", task);
    other.ask("offer-text UTF8_STRING newer");
    other.ask("copy");
    loop.finish(task);
    EXPECT_EQ(serve(reader, "paste-text UTF8_STRING"), "newer");
    EXPECT_EQ(form.ask("read line"), "[spoken]");
}

TEST_F(ClipboardOnTheDesktop, GivesBackWhatAProgramCopiedThatIsGoneByThen)
{
    copy({ "UTF8_STRING UTF8_STRING 8 10" });
    const auto before = pasted("UTF8_STRING");
    speakInto("line");
    const auto task = startInserting("spoken");
    untilPasted("line", task);
    other.kill();
    loop.finish(task);
    EXPECT_EQ(pasted("UTF8_STRING"), before);
}

TEST_F(ClipboardOnTheDesktop, IsNotHeldUpByTheOwnerWhereThatIsFrozen)
{
    copy({ "UTF8_STRING UTF8_STRING 8 10" });
    speakInto("line");
    other.freeze();
    insert("spoken");
    EXPECT_EQ(form.ask("read line"), "[spoken]");
    EXPECT_EQ(pasted("UTF8_STRING"), "refused"); // nobody can get it from the owner any more
    other.thaw();
    EXPECT_EQ(pasted("UTF8_STRING"), "refused");
}

TEST_F(ClipboardOnTheDesktop, IsEmptyWhereTheOwnerIsGoneBeforehand)
{
    copy({ "UTF8_STRING UTF8_STRING 8 10" });
    other.kill();
    speakInto("line");
    insert("spoken");
    EXPECT_EQ(form.ask("read line"), "[spoken]");
    EXPECT_EQ(pasted("UTF8_STRING"), "refused");
}

// The transcript is only lent for pasting: once the user's own is back, nobody gets it any more.
TEST_F(ClipboardOnTheDesktop, KeepsNothingOfTheTranscript)
{
    copy({ "image/png image/png 8 100" });
    speakInto("line");
    insert("spoken");
    for (const auto* name : { "UTF8_STRING", "text/plain", "STRING" })
        EXPECT_EQ(pasted(name), "refused");
    EXPECT_EQ(serve(reader, "paste-primary UTF8_STRING"), "refused");
}

TEST_F(ClipboardOnTheDesktop, IsNotTakenWhereTheDestinationDoesNotCareForTheKey)
{
    form.ask("deafen line");
    speakInto("line");
    const auto task = startInserting("spoken");
    loop.turnUntil([&] { return task.isFinished() || log.entries.size() > 0; });
    loop.finish(task);
    EXPECT_EQ(form.ask("read line"), "[]");
    ASSERT_EQ(log.entries.size(), 1U);
    EXPECT_EQ(log.entries[0].text, "The destination did not ask for the transcript");
}

} // namespace

} // namespace Sorvane
