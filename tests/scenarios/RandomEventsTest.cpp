// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Stage.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace Scenarios {
namespace {

using namespace std::chrono_literals;
using Phase = Sorvane::DictationPhase;
using Selection = Sorvane::OutputModeSelection;

constexpr int eventCount = 10'000;

// Does anything, in any order, and looks after each event that what must always hold still does. Every dictation has
// words of its own, so that they tell which one they come from.
class Chaos {
public:
    explicit Chaos(unsigned seed)
        : random_(seed)
    {
        stage_.controller->phaseChanged = [this] { followPhase(); };
    }

    void play()
    {
        for (int i = 0; i < eventCount && !::testing::Test::HasFailure(); ++i) {
            events_[pick(events_.size())](*this);
            stage_.loop.turn();
            check();
        }
    }

private:
    using Event = void (*)(Chaos&);

    size_t pick(size_t count) { return std::uniform_int_distribution<size_t>(0, count - 1)(random_); }
    bool toss() { return pick(2) == 1; }
    Sorvane::DictationController& controller() { return *stage_.controller; }

    // A recording that begins is a new dictation, unless it was only paused.
    void followPhase()
    {
        const Phase phase = controller().phase();
        if (phase == Phase::recording && phase_ == Phase::idle)
            words_ = "dictation " + std::to_string(++dictations_) + ".";
        EXPECT_TRUE(isAllowed(phase_, phase)) << static_cast<int>(phase_) << " to " << static_cast<int>(phase);
        phase_ = phase;
        stage_.engine->words = words_;
    }

    // The notice's changes are told as changes of the phase, too.
    static bool isAllowed(Phase from, Phase to)
    {
        if (from == to)
            return true;
        switch (from) {
        case Phase::idle:
            return to == Phase::recording;
        case Phase::recording:
            return to == Phase::paused || to == Phase::transcribing || to == Phase::idle;
        case Phase::paused:
            return to == Phase::recording || to == Phase::transcribing || to == Phase::idle;
        case Phase::transcribing:
            return to == Phase::idle;
        case Phase::preparing:
            return false;
        }
        return false;
    }

    void check()
    {
        EXPECT_EQ(controller().phase(), phase_);
        EXPECT_EQ(stage_.microphone.isRunning(), phase_ == Phase::recording);
        EXPECT_LE(controller().elapsed(), 300.0);
        checkTranscripts();
        checkFields();
        if (phase_ == Phase::idle)
            checkClipboard();
    }

    // What was stored stays, and what comes is of the dictation that was begun last.
    void checkTranscripts()
    {
        const auto& entries = controller().history().entries();
        ASSERT_GE(entries.size(), stored_.size());
        for (const auto& entry : entries) {
            if (stored_.insert(entry.id).second) {
                EXPECT_EQ(entry.text, words_);
            }
        }
        EXPECT_EQ(stored_.size(), entries.size());
    }

    void checkFields()
    {
        for (const auto& [name, field] : stage_.fields) {
            std::string& before = texts_[name];
            const std::string& now = field->text();
            if (now == before)
                continue;
            EXPECT_EQ(now, before + words_) << name;
            before = now;
        }
    }

    // Between dictations the clipboard holds what the user copied last or words of a dictation, nothing else. One that
    // cannot be written loses what it held.
    void checkClipboard()
    {
        const auto text = stage_.desktop.pasteboard.string();
        const bool isOfDictation = text && text->starts_with("dictation ");
        const bool isLost = !text && clipboardHasFailed_;
        EXPECT_TRUE(text == copied_ || isOfDictation || isLost) << text.value_or("nothing");
    }

    void passTime()
    {
        constexpr std::chrono::milliseconds steps[] = { 0ms, 40ms, 100ms, 500ms, 1s, 3s };
        stage_.pass(steps[pick(std::size(steps))]);
    }

    void copyByHand()
    {
        copied_ = "copied " + std::to_string(++copies_);
        stage_.desktop.pasteboard.copy(*copied_);
    }

    DesktopFakes::FakeApplication& anyApplication()
    {
        auto place = stage_.applications.begin();
        std::advance(place, pick(stage_.applications.size()));
        return *place->second;
    }

    DesktopFakes::FakeElement& anyField()
    {
        auto place = stage_.fields.begin();
        std::advance(place, pick(stage_.fields.size()));
        return *place->second;
    }

    static const std::vector<Event> events_;

    std::mt19937 random_;
    Stage stage_ { Stage::Models::ready };
    Phase phase_ = Phase::idle;
    size_t dictations_ = 0;
    size_t copies_ = 0;
    std::string words_;
    std::optional<std::string> copied_;
    bool clipboardHasFailed_ = false;
    std::set<PlatformSupport::UUID> stored_;
    std::map<std::string, std::string> texts_;
};

const std::vector<Chaos::Event> Chaos::events_ {
    [](Chaos& it) { it.stage_.desktop.hotKey.press(); },
    [](Chaos& it) { it.stage_.desktop.hotKey.press(); },
    [](Chaos& it) { it.stage_.desktop.hotKey.release(); },
    [](Chaos& it) { it.stage_.desktop.hotKey.release(); },
    [](Chaos& it) { it.controller().toggleFromButton(); },
    [](Chaos& it) { it.controller().togglePause(); },
    [](Chaos& it) { it.controller().pause(); },
    [](Chaos& it) { it.controller().resume(); },
    [](Chaos& it) {
        if (it.pick(4) == 0)
            it.controller().cancel();
    },
    [](Chaos& it) { it.controller().prepareModel(); },
    [](Chaos& it) { it.stage_.speakSamples(it.pick(20'000)); },
    [](Chaos& it) { it.stage_.speakSamples(it.pick(20'000)); },
    [](Chaos& it) { it.passTime(); },
    [](Chaos& it) { it.passTime(); },
    [](Chaos& it) { it.passTime(); },
    [](Chaos& it) {
        it.controller().setMode(it.toss() ? Sorvane::ActivationMode::hold : Sorvane::ActivationMode::toggle);
    },
    [](Chaos& it) { it.controller().setPreviewBeforeInsert(it.pick(4) == 0); },
    [](Chaos& it) { it.controller().setAutomaticallyCopy(it.toss()); },
    [](Chaos& it) { it.controller().setOutputModeSelection(Sorvane::allOutputModeSelections[it.pick(4)]); },
    [](Chaos& it) { it.controller().setShortcut(Sorvane::allShortcuts[it.pick(3)]); },
    [](Chaos& it) { it.controller().completion().dismiss(); },
    [](Chaos& it) { it.stage_.engine->takes = it.toss() ? 2s : 0s; },
    [](Chaos& it) { it.stage_.cleanup.takes = it.toss() ? 2s : 0s; },
    [](Chaos& it) {
        it.stage_.engine->failure = it.pick(4) == 0 ? std::optional<std::string>("Failed.") : std::nullopt;
    },
    [](Chaos& it) {
        it.stage_.cleanup.failure = it.pick(4) == 0 ? std::make_exception_ptr(std::runtime_error("Failed.")) : nullptr;
    },
    [](Chaos& it) {
        if (it.pick(4) == 0)
            it.stage_.microphone.failNextStart(DesktopServices::MicrophoneError("Busy."));
    },
    [](Chaos& it) { it.copyByHand(); },
    [](Chaos& it) {
        it.stage_.desktop.pasteboard.failNextSetString();
        it.clipboardHasFailed_ = true;
    },
    [](Chaos& it) { it.stage_.desktop.bringToFront(it.anyApplication()); },
    [](Chaos& it) { it.stage_.desktop.bringToFront(it.stage_.desktop.sorvane()); },
    [](Chaos& it) { it.stage_.desktop.clickInto(it.anyField()); },
    [](Chaos& it) { it.stage_.desktop.clickInto(it.anyField()); },
    [](Chaos& it) { it.anyField().enable(it.pick(4) != 0); },
    [](Chaos& it) {
        auto& application = it.anyApplication();
        it.pick(3) == 0 ? application.freeze() : application.thaw();
    },
};

class RandomEvents : public ::testing::TestWithParam<unsigned> { };

TEST_P(RandomEvents, LeaveWhatMustAlwaysHold)
{
    Chaos(GetParam()).play();
}

INSTANTIATE_TEST_SUITE_P(, RandomEvents, ::testing::Range(1U, 5U));

} // namespace
} // namespace Scenarios
