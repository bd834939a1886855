// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Stage.h"

#include "Steps.h"

#include <AudioIO/AudioFile.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <stdexcept>

namespace Scenarios {

using namespace std::chrono_literals;

Stage::Stage(Models models)
    : models_(models)
    , preparationStep_(models == Models::ready ? 0s : 1s)
{
    furnish();
    open();
}

void Stage::restart()
{
    controller.reset();
    loop.turn();
    open();
}

// What the application and its windows would do.
void Stage::open()
{
    controller = std::make_unique<Sorvane::DictationController>(services());
    controller->showWindow = [this] { ++windowsShown; };
    controller->dismissOnboarding = [this] { controller->onboardingVisible = false; };
    if (models_ == Models::ready) {
        controller->prepareModel();
        loop.turn();
    }
}

void Stage::furnish()
{
    const auto launch = [&](const std::string& name, const std::string& identifier) {
        applications[name] = &desktop.launch({ .name = name, .bundleIdentifier = identifier });
        return &applications[name]->openWindow(name);
    };
    fields["Shell"] = &launch("Terminal", "org.example.terminal")->addTextArea("Shell");
    fields["Shell"]->focus();
    fields["Search"] = &launch("Browser", "com.google.Chrome")->addTextField("Search");
    fields["Search"]->focus();
    auto* const document = launch("Editor", "org.example.editor");
    fields["Title"] = &document->addTextField("Title");
    fields["Notes"] = &document->addTextArea("Notes");
    desktop.clickInto(field("Notes"));
    firstChangeCount = desktop.pasteboard.changeCount();
}

Sorvane::DictationServices Stage::services()
{
    using Context = Sorvane::TranscriptCleanup::Context;
    return {
        .mainThread = loop.executor(),
        .clock = clock,
        .uuids = uuids,
        .defaults = defaults,
        .desktop = desktop.services(),
        .microphone = microphone,
        .historyDirectory = folder / "Transcripts",
        .cleanup = Sorvane::TranscriptCleanup(
            [this](const std::string& text, Context context) {
                return real ? real->generate(text, context) : cleanup.generate(text, context);
            },
            tagger),
        .loadSpeech = [this](const auto&) { return loadSpeech(); },
        .prepareCleanup = [this](const auto&) { return prepareCleanup(); },
    };
}

void Stage::play(const Step& step)
{
    const auto found = allSteps().find(step.words);
    if (found == allSteps().end())
        throw std::runtime_error("line " + std::to_string(step.line) + ": nobody knows how to play " + step.words);
    const ::testing::ScopedTrace trace("", static_cast<int>(step.line), step.words);
    found->second(*this, step);
    loop.turn();
}

void Stage::pass(std::chrono::nanoseconds time)
{
    loop.turn();
    clock.advance(time);
    loop.turn();
}

void Stage::waitUntilFinished()
{
    const auto isFinished = [this] { return controller->phase() != Sorvane::DictationPhase::transcribing; };
    while (!isFinished()) {
        loop.turnUntil([&] { return isFinished() || clock.sleepers() > 0; });
        pass(50ms);
    }
}

void Stage::speak(const std::string& words, double seconds)
{
    engine->words = words;
    speakSamples(static_cast<size_t>(std::lround(seconds * Sorvane::AudioRecorder::sampleRate)));
}

// A tone, for those who look at the level.
void Stage::speakSamples(size_t count)
{
    constexpr double step = 2 * std::numbers::pi * 440 / Sorvane::AudioRecorder::sampleRate;
    std::vector<float> samples(count);
    for (size_t i = 0; i < count; ++i)
        samples[i] = 0.5F * static_cast<float>(std::sin(step * static_cast<double>(i)));
    microphone.play(samples);
}

void Stage::speakRecording(const std::string& name)
{
    AudioIO::AudioFile file(std::filesystem::path(SAMPLES_DIRECTORY) / name);
    std::vector<float> samples;
    file.read(file.length(), samples);
    microphone.play(samples);
}

void Stage::addPage(const std::string& url, const std::string& name)
{
    auto& page = application(name).focusedWindow()->addWebArea(url);
    fields["Message Body"] = &page.addTextArea("Message Body");
    fields["Subject"] = &page.addTextField("Subject");
}

} // namespace Scenarios
