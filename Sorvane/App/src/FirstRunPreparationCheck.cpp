// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "FirstRunPreparationCheck.h"

#include "ModelServices.h"

#include <PlatformSupport/UserFolders.h>
#include <Sorvane/TranscriptCleanup.h>

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <system_error>
#include <utility>

namespace Sorvane {

using PlatformSupport::Awaitable;

namespace {

namespace fs = std::filesystem;

void report(const std::string& message)
{
    std::printf("First-run check: %s\n", message.c_str());
    std::fflush(stdout);
}

// A second of a tone. What counts is that the model runs to its end, not what it hears in a tone.
bool infers(Ostrel::Ostrel& engine)
{
    constexpr double frequency = 440; // Hz
    std::vector<float> samples(static_cast<size_t>(engine.sampleRate()));
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<float>(
            0.1 * std::sin(2 * std::numbers::pi * frequency * static_cast<double>(i) / engine.sampleRate()));
    try {
        return engine.transcribe(samples).duration > 0;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

FirstRunPreparationCheck::FirstRunPreparationCheck(const Composition& composition)
    : composition_(composition)
    , directory_(
          PlatformSupport::UserFolders::fromEnvironment().temporary / ("sorvane-first-run-" + uuids_.next().text()))
    , interruption_([this] {
        PlatformSupport::startDetachedTask(mainThread_.executor(), [this]() -> Awaitable<void> {
            stop();
            co_return;
        });
    })
{
    constexpr mode_t onlyThisUser = 0700;
    if (::mkdir(directory_.c_str(), onlyThisUser) != 0)
        throw fs::filesystem_error(
            "cannot make a directory", directory_, std::error_code(errno, std::generic_category()));
}

FirstRunPreparationCheck::~FirstRunPreparationCheck()
{
    std::error_code ignored;
    fs::remove_all(directory_, ignored);
}

void FirstRunPreparationCheck::run()
{
    constexpr std::array wholeWay { Stage::Case::speech, Stage::Case::cleanup, Stage::Case::ready };
    ModelServices fresh(composition_, Network::reachable());
    const auto stages = prepare(fresh);
    if (!std::ranges::equal(stages, wholeWay, {}, &Stage::which))
        throw CheckFailure("Fresh preparation failed: " + statusLine(stages.back()));
    requireEdit(fresh);
    report("Both downloaded models ran inference successfully.");

    ModelServices offline(composition_, Network::cutOff());
    const Stage reopened = prepare(offline).back();
    if (reopened.which != Stage::Case::ready)
        throw CheckFailure("Offline reopen failed: " + statusLine(reopened));
    report("PASS: fresh downloads, inference, and offline cache reuse.");
}

// The stages that a preparation goes through, each told as it comes.
std::vector<ModelPreparation::Stage> FirstRunPreparationCheck::prepare(ModelServices& services)
{
    std::vector<Stage> seen;
    ModelPreparation preparation(mainThread_.executor(), uuids_);
    preparation.onChange = [&] {
        if (!seen.empty() && seen.back() == preparation.stage())
            return;
        seen.push_back(preparation.stage());
        report(statusLine(seen.back()));
    };
    const auto speech = [&](PreparationProgress progress) { return prepareSpeech(services, std::move(progress)); };
    const auto cleanup = [&](PreparationProgress progress) {
        return services.prepareCleanup(directory_ / "cleanup", std::move(progress));
    };
    preparation.start(speech, cleanup);
    const auto cancel = [&] {
        if (const auto& task = preparation.task())
            task->cancel();
    };
    runToEnd(cancel, [&] { return !preparation.task(); });
    return seen;
}

Awaitable<void> FirstRunPreparationCheck::prepareSpeech(ModelServices& services, PreparationProgress progress) const
{
    const ModelStore::ModelPlace place { .directory = directory_ / "speech", .cacheRoot = {} };
    const auto engine = co_await services.loadSpeech(place, std::move(progress));
    if (!infers(*engine))
        throw CheckFailure("Speech inference failed.");
}

// Whoever asks the process to end cancels what runs, which then fails, as does all that would come after it.
void FirstRunPreparationCheck::stop()
{
    isStopped_ = true;
    if (cancel_)
        cancel_();
}

void FirstRunPreparationCheck::runToEnd(std::function<void()> cancel, const std::function<bool()>& isFinished)
{
    cancel_ = std::move(cancel);
    if (isStopped_)
        cancel_();
    mainThread_.turnUntil(isFinished);
    cancel_ = {};
}

void FirstRunPreparationCheck::requireEdit(ModelServices& services)
{
    const std::string transcript = "Um, can you, can you make the labels smaller, uh, but keep the icon size?";
    const CleanupFiles files { directory_ / "cleanup", composition_.cleanupAssets().weights.bytes };
    const auto generate = [&] {
        return TranscriptCleanup::generate(
            transcript, TranscriptCleanup::Context::general, files, services.cleanupProcess(), tagger_);
    };
    const auto task = PlatformSupport::startTask(mainThread_.executor(), generate);
    runToEnd([&] { task.cancel(); }, [&] { return task.isFinished(); });
    const std::string response = mainThread_.finish(task);
    const auto tidied = TranscriptCleanup::validate(response, transcript);
    if (!tidied || *tidied == transcript)
        throw CheckFailure("Downloaded cleanup model did not edit the synthetic transcript.");
}

} // namespace Sorvane
