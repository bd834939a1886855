// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Onlooker.h"

#include <DesktopServices/AccessibilityNames.h>

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <vector>

namespace Scenarios {
namespace {

using namespace std::chrono_literals;
using DesktopServices::AuthorizationStatus;
using DesktopServices::MicrophoneError;
using Phase = Sorvane::DictationPhase;

namespace AccessibilityAttribute = DesktopServices::AccessibilityAttribute;

constexpr int eventCount = 10'000;

// Does anything, in any order, under the eyes of an onlooker.
class Chaos {
public:
    explicit Chaos(unsigned seed)
        : random_(seed)
    {
    }

    void play()
    {
        for (int i = 0; i < eventCount && !::testing::Test::HasFailure(); ++i) {
            anyEvent().happen(*this);
            settle();
        }
    }

    // After all that, a dictation is as good as the first one.
    void playInPeace()
    {
        makePeace();
        desktop().clickInto(stage_.field("Notes"));
        const std::string before = stage_.field("Notes").text();
        tapShortcut();
        EXPECT_EQ(controller().phase(), Phase::recording) << controller().status();
        stage_.speakSamples(16'000);
        tapShortcut();
        stage_.pass(5s);
        settle();
        EXPECT_EQ(controller().status(), "Inserted in Editor.");
        EXPECT_EQ(stage_.field("Notes").text(), before + onlooker_.words());
    }

private:
    struct Event {
        unsigned weight; // how often it happens, compared to others
        void (*happen)(Chaos&);
    };

    size_t pick(size_t count) { return std::uniform_int_distribution<size_t>(0, count - 1)(random_); }
    bool toss() { return pick(2) == 1; }
    bool isRare() { return pick(4) == 0; }

    const Event& anyEvent()
    {
        std::vector<unsigned> weights;
        for (const auto& event : events_)
            weights.push_back(event.weight);
        return events_[std::discrete_distribution<size_t>(weights.begin(), weights.end())(random_)];
    }

    template <typename Things> auto& any(Things& things)
    {
        auto place = things.begin();
        std::advance(place, pick(things.size()));
        return *place->second;
    }
    DesktopFakes::FakeApplication& anyApplication() { return any(stage_.applications); }
    DesktopFakes::FakeElement& anyField() { return any(stage_.fields); }

    Sorvane::DictationController& controller() { return *stage_.controller; }
    DesktopFakes::FakeDesktop& desktop() { return stage_.desktop; }

    void settle()
    {
        stage_.loop.turn();
        onlooker_.look();
    }

    void passTime()
    {
        constexpr std::chrono::milliseconds steps[] = { 0ms, 40ms, 100ms, 500ms, 1s, 3s };
        stage_.pass(steps[pick(std::size(steps))]);
    }

    void copyByHand()
    {
        const std::string text = "copied " + std::to_string(++copies_);
        desktop().pasteboard.copy(text);
        onlooker_.copied(text);
    }

    // A password field, or an ordinary one again.
    void changeSubrole(DesktopFakes::FakeElement& field)
    {
        if (isRare())
            field.answer(AccessibilityAttribute::subrole, "AXSecureTextField");
        else
            field.fail(AccessibilityAttribute::subrole, DesktopServices::AccessibilityError::noValue);
    }

    void tapShortcut()
    {
        desktop().hotKey.press();
        desktop().hotKey.release();
        settle();
    }

    void makePeace()
    {
        for (const auto& [name, application] : stage_.applications)
            application->thaw();
        for (const auto& [name, field] : stage_.fields) {
            field->enable();
            field->fail(AccessibilityAttribute::subrole, DesktopServices::AccessibilityError::noValue);
        }
        desktop().permissions.microphone = AuthorizationStatus::authorized;
        desktop().permissions.accessibility = true;
        desktop().pasteboard.setString("", DesktopServices::pasteboardStringType); // which may fail once more
        stage_.engine->failure.reset();
        stage_.cleanup.failure = nullptr;
        onlooker_.setSilent(false);
        controller().onboardingVisible = false;
        controller().setMode(Sorvane::ActivationMode::toggle);
        controller().setPreviewBeforeInsert(false);
        desktop().hotKey.release();
        stage_.pass(1min);
        settle();
        EXPECT_NE(controller().phase(), Phase::transcribing);
        controller().cancel();
        desktop().clickInto(stage_.field("Notes"));
        tapShortcut(); // the microphone may fail once more
        controller().cancel();
        settle();
    }

    static const std::vector<Event> events_;

    std::mt19937 random_;
    Stage stage_ { Stage::Models::ready };
    Onlooker onlooker_ { stage_ };
    size_t copies_ = 0;
};

const std::vector<Chaos::Event> Chaos::events_ {
    // The user's fingers
    { 12, [](Chaos& it) { it.desktop().hotKey.press(); } },
    { 12, [](Chaos& it) { it.desktop().hotKey.release(); } },
    { 4, [](Chaos& it) { it.controller().toggleFromButton(); } },
    { 2, [](Chaos& it) { it.controller().togglePause(); } },
    { 1, [](Chaos& it) { it.controller().pause(); } },
    { 3, [](Chaos& it) { it.controller().resume(); } },
    { 1, [](Chaos& it) { it.controller().cancel(); } },
    { 1, [](Chaos& it) { it.controller().prepareModel(); } },
    { 1, [](Chaos& it) { it.controller().onboardingVisible = it.isRare(); } },
    { 1, [](Chaos& it) { it.controller().completion().dismiss(); } },

    // Voice and time
    { 30, [](Chaos& it) { it.stage_.speakSamples(it.pick(30'000)); } },
    { 1, [](Chaos& it) { it.onlooker_.setSilent(it.isRare()); } },
    { 20, [](Chaos& it) { it.passTime(); } },

    // Settings
    { 1,
        [](Chaos& it) {
            it.controller().setMode(it.toss() ? Sorvane::ActivationMode::hold : Sorvane::ActivationMode::toggle);
        } },
    { 1, [](Chaos& it) { it.controller().setPreviewBeforeInsert(it.isRare()); } },
    { 1, [](Chaos& it) { it.controller().setAutomaticallyCopy(it.toss()); } },
    { 1, [](Chaos& it) { it.controller().setOutputModeSelection(Sorvane::allOutputModeSelections[it.pick(4)]); } },
    { 1, [](Chaos& it) { it.controller().setShortcut(Sorvane::allShortcuts[it.pick(3)]); } },
    { 1,
        [](Chaos& it) {
            it.desktop().permissions.microphone
                = it.isRare() ? AuthorizationStatus::denied : AuthorizationStatus::authorized;
        } },
    { 1, [](Chaos& it) { it.desktop().permissions.accessibility = !it.isRare(); } },

    // The machinery
    { 1, [](Chaos& it) { it.stage_.engine->takes = it.toss() ? 2s : 0s; } },
    { 1, [](Chaos& it) { it.stage_.cleanup.takes = it.toss() ? 2s : 0s; } },
    { 1,
        [](Chaos& it) {
            it.stage_.engine->failure = it.isRare() ? std::optional<std::string>("Failed.") : std::nullopt;
        } },
    { 1,
        [](Chaos& it) {
            it.stage_.cleanup.failure = it.isRare() ? std::make_exception_ptr(std::runtime_error("Failed.")) : nullptr;
        } },
    { 1,
        [](Chaos& it) {
            if (it.isRare())
                it.stage_.microphone.failNextStart(MicrophoneError("Busy."));
        } },
    { 1,
        [](Chaos& it) {
            if (it.isRare())
                it.stage_.microphone.play({ { .sampleRate = 48'000, .channels = 1 }, {} });
        } },

    // The desktop
    { 3, [](Chaos& it) { it.copyByHand(); } },
    { 1,
        [](Chaos& it) {
            if (it.isRare())
                it.desktop().pasteboard.failNextSetString();
        } },
    { 1, [](Chaos& it) { it.desktop().bringToFront(it.anyApplication()); } },
    { 1, [](Chaos& it) { it.desktop().bringToFront(it.desktop().sorvane()); } },
    { 6, [](Chaos& it) { it.desktop().clickInto(it.anyField()); } },
    { 1,
        [](Chaos& it) {
            if (it.isRare())
                it.anyApplication().openWindow("Empty");
        } },
    { 1, [](Chaos& it) { it.anyField().enable(!it.isRare()); } },
    { 1, [](Chaos& it) { it.changeSubrole(it.anyField()); } },
    { 1, [](Chaos& it) { it.isRare() ? it.anyApplication().freeze() : it.anyApplication().thaw(); } },
};

class RandomEvents : public ::testing::TestWithParam<unsigned> { };

TEST_P(RandomEvents, LeaveWhatMustAlwaysHold)
{
    Chaos chaos(GetParam());
    chaos.play();
    chaos.playInPeace();
}

INSTANTIATE_TEST_SUITE_P(, RandomEvents, ::testing::Range(1U, 9U));

} // namespace
} // namespace Scenarios
