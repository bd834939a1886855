// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopFakes/FakeDesktop.h>
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/UserDefaults.h>
#include <PlatformSupport/UUID.h>
#include <Sorvane/DictationController.h>
#include <Sorvane/LexicalTagger.h>

#include <TemporaryFolder.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Sorvane {

// A controller with everything that it needs, on a fake desktop whose clock is turned by hand: for the tests of what
// shows a dictation. All is allowed, the models are ready, a field has the focus, and the engine hears "Hello.".
class DictationOnFakes {
public:
    DictationOnFakes()
    {
        auto& editor = desktop.launch({ .name = "Editor", .bundleIdentifier = "org.example.editor" });
        desktop.clickInto(editor.openWindow("Notes").addTextArea("Notes"));
        controller.prepareModel();
        loop.turn();
    }

    // So many samples of one value, at 16 kHz.
    void speak(float value, size_t count = 16'000) { microphone.play(std::vector<float>(count, value)); }

    void pass(PlatformSupport::Clock::Duration time)
    {
        loop.turn();
        clock.advance(time);
        loop.turn();
    }

    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::HandTurnedClock clock { loop };
    DesktopFakes::FakeDesktop desktop { loop, clock };
    DesktopFakes::FakeMicrophone microphone { { .sampleRate = 16'000, .channels = 1 } };

private:
    class Engine final : public SpeechEngine {
    public:
        PlatformSupport::Awaitable<std::string> transcribe(std::vector<float>) override { co_return "Hello."; }
    };

    static PlatformSupport::Awaitable<std::string> answer(std::string text)
    {
        co_return std::move(text) + "<|im_end|> [end of text]\n\n\n";
    }
    static PlatformSupport::Awaitable<std::shared_ptr<SpeechEngine>> loadEngine()
    {
        co_return std::make_shared<Engine>();
    }
    static PlatformSupport::Awaitable<void> nothing() { co_return; }

    DictationServices services()
    {
        return {
            .mainThread = loop.executor(),
            .clock = clock,
            .uuids = uuids_,
            .defaults = defaults_,
            .desktop = desktop.services(),
            .microphone = microphone,
            .historyDirectory = folder_ / "Transcripts",
            .cleanup = TranscriptCleanup([](const std::string& text, auto) { return answer(text); }, tagger_),
            .loadSpeech = [](const auto&) { return loadEngine(); },
            .prepareCleanup = [](const auto&) { return nothing(); },
        };
    }

    struct Tagger final : LexicalTagger {
        std::vector<LexicalClass> classesOfWords(std::string_view) const override { return {}; }
    };

    PlatformSupport::MemoryUserDefaults defaults_;
    PlatformSupport::RandomUUIDs uuids_;
    TestSupport::TemporaryFolder folder_;
    Tagger tagger_;

public:
    DictationController controller { services() };
};

} // namespace Sorvane
