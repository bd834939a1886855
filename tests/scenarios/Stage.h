// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "RealParts.h"
#include "ScriptedCleanup.h"
#include "ScriptedEngine.h"
#include "Story.h"

#include <DesktopFakes/FakeDesktop.h>
#include <DesktopFakes/FakeMicrophone.h>
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/UserDefaults.h>
#include <PlatformSupport/UUID.h>
#include <Sorvane/DictationController.h>
#include <Sorvane/LinkGrammarTagger.h>

#include <TemporaryFolder.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace Scenarios {

// Where stories are played: the real controller with all that belongs to it, on a fake desktop, with a clock that is
// turned by hand.
//
// Three programs run there: "Editor" in front, with the fields "Title" and "Notes", of which the latter has the focus;
// "Browser" with the field "Search"; "Terminal" with the field "Shell". All is allowed, the models are ready unless
// told otherwise, and cleanup leaves the words as they are.
class Stage {
public:
    enum class Models { ready, notPrepared };

    explicit Stage(Models models);
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    void play(const Step& step);

    // The program ends and is started again, with what it has stored.
    void restart();

    void pass(std::chrono::nanoseconds time);

    // Lets time pass until the dictation is finished, where that takes as long as it takes.
    void waitUntilFinished();
    void speak(const std::string& words, double seconds);
    void speakSamples(size_t count);

    DesktopFakes::FakeApplication& application(const std::string& name) { return *applications.at(name); }
    DesktopFakes::FakeElement& field(const std::string& name) { return *fields.at(name); }
    void speakRecording(const std::string& name); // of samples/, 16 kHz mono
    void addPage(const std::string& url, const std::string& name);

    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::HandTurnedClock clock { loop };
    DesktopFakes::FakeDesktop desktop { loop, clock };
    DesktopFakes::FakeMicrophone microphone { { .sampleRate = 16'000, .channels = 1 } };
    PlatformSupport::MemoryUserDefaults defaults;
    PlatformSupport::RandomUUIDs uuids;
    std::shared_ptr<ScriptedEngine> engine = std::make_shared<ScriptedEngine>(clock);
    ScriptedCleanup cleanup { clock };
    std::unique_ptr<RealParts> real; // once a story asks for them: in place of the two above
    Sorvane::LinkGrammarTagger tagger;
    TestSupport::TemporaryFolder folder;
    std::unique_ptr<Sorvane::DictationController> controller;

    std::map<std::string, DesktopFakes::FakeApplication*> applications;
    std::map<std::string, DesktopFakes::FakeElement*> fields;

    size_t windowsShown = 0;
    size_t speechLoads = 0;
    std::optional<std::string> speechPreparationFailure;
    std::optional<std::string> cleanupPreparationFailure;
    bool microphoneAnswer = true;
    std::int64_t firstChangeCount = 0; // of the clipboard, after what was given

private:
    void furnish();
    void open();
    Sorvane::DictationServices services();
    PlatformSupport::Awaitable<std::shared_ptr<Sorvane::SpeechEngine>> loadSpeech();
    PlatformSupport::Awaitable<void> prepareCleanup();

    Models models_;
    PlatformSupport::Clock::Duration preparationStep_;
};

} // namespace Scenarios
