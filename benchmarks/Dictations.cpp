// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Dictations [COUNT]: how many dictations a second pass the whole road, from the press of the key to the text in the
// field, on a fake desktop with an engine and a cleanup that take no time; and what memory each leaves behind.
#include <DesktopFakes/FakeDesktop.h>
#include <DesktopFakes/FakeMicrophone.h>
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/UserDefaults.h>
#include <Sorvane/DictationController.h>
#include <Sorvane/LinkGrammarTagger.h>

#include <TemporaryFolder.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace {

using namespace std::chrono_literals;
using PlatformSupport::Awaitable;

class QuickEngine final : public Sorvane::SpeechEngine {
public:
    Awaitable<std::string> transcribe(std::vector<float>) override { co_return "um Good morning. The train is late."; }
};

// Kilobytes that are in memory now.
long residentKilobytes()
{
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

class Road {
public:
    explicit Road(const std::filesystem::path& folder)
        : controller_({
            .mainThread = loop_.executor(),
            .clock = clock_,
            .uuids = uuids_,
            .defaults = defaults_,
            .desktop = desktop_.services(),
            .microphone = microphone_,
            .historyDirectory = folder,
            .cleanup = Sorvane::TranscriptCleanup(
                [](const std::string&, auto) -> Awaitable<std::string> {
                    co_return "Good morning. The train is late.<|im_end|> [end of text]";
                },
                tagger_),
            .loadSpeech = [](const auto&) -> Awaitable<std::shared_ptr<Sorvane::SpeechEngine>> {
                co_return std::make_shared<QuickEngine>();
            },
            .prepareCleanup = [](const auto&) -> Awaitable<void> { co_return; },
        })
    {
        desktop_.clickInto(note_);
        controller_.prepareModel();
        loop_.turn();
    }

    void dictate()
    {
        desktop_.hotKey.press();
        desktop_.hotKey.release();
        microphone_.play(speech_);
        desktop_.hotKey.press();
        desktop_.hotKey.release();
        loop_.turn();
        clock_.advance(3s);
        if (note_.text().empty())
            std::abort();
        note_.select(note_.text());
        desktop_.accessibility.calls.clear();
        desktop_.keyEvents.posted.clear();
    }

private:
    PlatformSupport::HandTurnedLoop loop_;
    PlatformSupport::HandTurnedClock clock_ { loop_ };
    DesktopFakes::FakeDesktop desktop_ { loop_, clock_ };
    DesktopFakes::FakeElement& note_ = desktop_.launch({ .name = "Editor" }).openWindow("Editor").addTextArea("Note");
    DesktopFakes::FakeMicrophone microphone_ { { .sampleRate = 48'000, .channels = 2 } };
    PlatformSupport::MemoryUserDefaults defaults_;
    PlatformSupport::RandomUUIDs uuids_;
    Sorvane::LinkGrammarTagger tagger_;
    std::vector<float> speech_ = std::vector<float>(2 * 48'000, 0.1F); // a second
    Sorvane::DictationController controller_;
};

} // namespace

int main(int count, char** values)
{
    const int dictations = count > 1 ? std::atoi(values[1]) : 10'000;
    const TestSupport::TemporaryFolder folder;
    {
        Road road(folder.path());
        road.dictate();
        const long before = residentKilobytes();
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < dictations; ++i)
            road.dictate();
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
        std::printf("%.0f dictations a second, %.2f KB kept for each\n", dictations / time.count(),
            static_cast<double>(residentKilobytes() - before) / dictations);
    }
}
