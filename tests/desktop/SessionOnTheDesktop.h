// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "RealDesktop.h"
#include "Sound/PrivateSoundServer.h"

#include <PlatformSupport/UserDefaults.h>
#include <PlatformSupport/UUID.h>
#include <Sorvane/DictationController.h>
#include <Sorvane/LexicalTagger.h>

#include <gtest/gtest.h>
#include <TemporaryFolder.h>

#include <memory>
#include <string>
#include <vector>

namespace Sorvane {

// Hears always the same words.
class DeafSpeechEngine final : public SpeechEngine {
public:
    PlatformSupport::Awaitable<std::string> transcribe(std::vector<float> given) override
    {
        samples = std::move(given);
        co_return "spoken words";
    }

    std::vector<float> samples; // of the last dictation, 16 kHz mono
};

// Dictations by the real controller on a real desktop, with a sound server of its own. The models alone are none.
class SessionOnTheDesktop : public testing::Test {
protected:
    SessionOnTheDesktop();

    // Starts the controller; comes back when its models are ready.
    void open();

    // Until nothing stands in the way of a dictation.
    void untilReady();

    // What the user reads.
    void untilStatusIs(const std::string& status);

    // The user presses a key and lets go of it, on a field or wherever he is.
    void pressShortcut();
    void begin(); // a dictation: waits until it is listened to
    void end(); // and waits until it is over

    // Until so much more was captured.
    void untilCaptured(double seconds);

    // A whole dictation into a field of the form, and what stands in the field after one.
    void expectDictation(const std::string& field);
    void expectWordsIn(const std::string& field);

    // What a program gets that pastes.
    std::string clipboard() { return desktop.serve(desktop.other, "paste-text UTF8_STRING"); }

    DesktopLinux::PrivateSoundServer server; // the desktop's
    RealDesktop desktop;
    PlatformSupport::MemoryUserDefaults defaults;
    std::shared_ptr<DeafSpeechEngine> engine = std::make_shared<DeafSpeechEngine>();
    std::unique_ptr<DictationController> controller;
    int windowsShown = 0;

private:
    class NoTagger final : public LexicalTagger {
    public:
        std::vector<LexicalClass> classesOfWords(std::string_view) const override { return {}; }
    };

    DictationServices services();

    NoTagger tagger_;
    PlatformSupport::RandomUUIDs uuids_;
    TestSupport::TemporaryFolder folder_;
};

} // namespace Sorvane
