// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// DesktopDictations latency [ROUNDS] | capture [ROUNDS] | many [DICTATIONS] | idle [SECONDS]
//
// The built application on a desktop of its own, with real keys, a real microphone and a real field: how long after the
// key is released the words stand there, how long the field is looked at when the key is pressed, what many dictations
// leave behind, and what the application does while nobody dictates. To be run by benchmarks/desktop.
#include "DescriptorWatch.h"
#include "DictationOnTheDesktop.h"
#include "LinuxDesktop.h"

#include <AudioIO/AudioFile.h>
#include <PlatformSupport/Environment.h>
#include <PlatformSupport/SystemClock.h>
#include <Sorvane/TextInsertion.h>

#include <sys/inotify.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Instant = std::chrono::steady_clock::time_point;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr auto hold = R"({"activationMode": "Hold to speak", "automaticallyCopy": false})";

constexpr auto shortRecording = "unknown-speaker-reminder.wav"; // 5 s
constexpr auto longRecording = "unknown-speaker-report.m4a"; // 22 s

double between(Instant start, Instant end)
{
    return Milliseconds(end - start).count();
}

// Milliseconds of one step, and the line of a table that tells of them.
struct Step {
    std::string name;
    std::vector<double> times {};

    void tell()
    {
        std::ranges::sort(times);
        const auto at
            = [&](double share) { return times[static_cast<size_t>(share * double(times.size() - 1) + 0.5)]; };
        std::printf("| %s | %.1f | %.1f | %.1f |\n", name.c_str(), at(0.5), at(0.95), times.back());
        std::fflush(stdout);
    }
};

// What the system says of a process.
struct Usage {
    explicit Usage(pid_t process)
    {
        const std::string folder = "/proc/" + std::to_string(process);
        for (const auto& thread : std::filesystem::directory_iterator(folder + "/task")) {
            ++threads;
            const auto status = fields(thread.path() / "status");
            switches += status.at("voluntary_ctxt_switches") + status.at("nonvoluntary_ctxt_switches");
        }
        memory = fields(folder + "/status").at("VmRSS");
        for ([[maybe_unused]] const auto& file : std::filesystem::directory_iterator(folder + "/fd"))
            ++files;
        std::ifstream stat(folder + "/stat");
        std::string word;
        for (int field = 1; field <= 15 && stat >> word; ++field)
            if (field >= 14)
                processor += std::stod(word) / double(::sysconf(_SC_CLK_TCK));
    }

    static std::map<std::string, long> fields(const std::filesystem::path& file)
    {
        std::ifstream lines(file);
        std::map<std::string, long> values;
        for (std::string line; std::getline(lines, line);)
            if (const size_t colon = line.find(':'); colon != std::string::npos)
                values[line.substr(0, colon)] = std::strtol(line.c_str() + colon + 1, nullptr, 10);
        return values;
    }

    long memory = 0; // KiB
    long threads = 0;
    long files = 0;
    long switches = 0; // of threads, each a wake-up
    double processor = 0; // seconds
};

// What the application does with its files on the way from the last sample to the clipboard.
class FileEvents {
public:
    FileEvents(const PlatformSupport::Executor& executor, const std::filesystem::path& transcripts,
        const std::filesystem::path& tools)
        : transcripts_(::inotify_add_watch(events_.number(), transcripts.c_str(), IN_CREATE))
        , tools_(::inotify_add_watch(events_.number(), tools.c_str(), IN_OPEN | IN_CLOSE_NOWRITE))
        , watch_(executor, events_.number(), [this] { take(); })
    {
    }

    Instant kept; // the first file of a transcript that is being kept
    Instant toolStarted; // the first of the cleanup's tools
    Instant toolEnded; // the last of them

    void forget() { kept = toolStarted = toolEnded = {}; }

private:
    void take()
    {
        alignas(inotify_event) std::array<char, 4096> buffer {};
        const auto size = ::read(events_.number(), buffer.data(), buffer.size());
        for (ssize_t at = 0; at < size;) {
            const auto& event = *reinterpret_cast<const inotify_event*>(&buffer[static_cast<size_t>(at)]);
            note(event);
            at += static_cast<ssize_t>(sizeof(event) + event.len);
        }
    }

    // A program is opened when it is started, and closed when it has ended.
    void note(const inotify_event& event)
    {
        const auto now = std::chrono::steady_clock::now();
        if (event.wd == transcripts_ && kept == Instant())
            kept = now;
        if (event.wd != tools_ || (event.mask & IN_ISDIR) != 0)
            return;
        if ((event.mask & IN_OPEN) != 0 && toolStarted == Instant())
            toolStarted = now;
        if ((event.mask & IN_CLOSE_NOWRITE) != 0)
            toolEnded = now;
    }

    PlatformSupport::FileDescriptor events_ { ::inotify_init1(IN_CLOEXEC | IN_NONBLOCK) };
    int transcripts_;
    int tools_;
    DesktopLinux::DescriptorWatch watch_;
};

class DesktopDictations final : public DictationOnTheDesktop {
public:
    DesktopDictations()
        : DictationOnTheDesktop(hold)
    {
        const auto version = usersConnection.reply<xcb_xfixes_query_version_reply_t>(
            xcb_xfixes_query_version(usersConnection.get(), 5, 0));
        const auto name
            = usersConnection.reply<xcb_intern_atom_reply_t>(xcb_intern_atom(usersConnection.get(), 0, 9, "CLIPBOARD"));
        xcb_xfixes_select_selection_input(usersConnection.get(), usersConnection.root(), name->atom,
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
        const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(usersConnection.get(), usersConnection.root(), XCB_CW_EVENT_MASK, &mask);
        usersConnection.synchronise();
        firstExtensionEvent_ = xcb_get_extension_data(usersConnection.get(), &xcb_xfixes_id)->first_event;
        events_ = usersConnection.observe([this](const xcb_generic_event_t& event) { note(event); });
        focus(form, "page");
    }

    void latency(int rounds)
    {
        for (const std::string recording : { shortRecording, longRecording }) {
            Step bar { "key down until the bar is on the screen" };
            Step heard { "key up until the words are recognised" };
            Step kept { "until they are kept and the cleanup starts" };
            Step cleaned { "until the cleanup's tools have ended" };
            Step copied { "until the cleaned words are kept, the field is proved, and the words are on the clipboard" };
            Step field { "until they stand in the field" };
            Step all { "key up until they stand in the field" };
            for (int round = 0; round <= rounds; ++round) {
                const auto times = dictate(recording);
                if (round == 0)
                    continue; // everything is read for the first time
                bar.times.push_back(between(times.pressed, times.barShown));
                heard.times.push_back(between(times.released, times.recognised));
                kept.times.push_back(between(times.recognised, times.cleanupStarted));
                cleaned.times.push_back(between(times.cleanupStarted, times.cleanupEnded));
                copied.times.push_back(between(times.cleanupEnded, times.copied));
                field.times.push_back(between(times.copied, times.typed));
                all.times.push_back(between(times.released, times.typed));
            }
            std::printf(
                "\n%s, %d times:\n\n| ms | median | 95 %% | most |\n|---|---|---|---|\n", recording.c_str(), rounds);
            for (Step* const step : { &bar, &heard, &kept, &cleaned, &copied, &field, &all })
                step->tell();
        }
    }

    // In this process, with the services of the application.
    void capture(int rounds)
    {
        PlatformSupport::SystemClock clock;
        Sorvane::LinuxDesktop desktop(loop.executor(), clock);
        Sorvane::TextInsertion insertion(desktop.services(), clock);
        loop.turnUntil([&] { return desktop.permissions.isAccessibilityTrusted(); });
        Step step { "capture of the field" };
        for (int round = 0; round < rounds; ++round) {
            const auto begin = std::chrono::steady_clock::now();
            insertion.captureForRecording();
            step.times.push_back(between(begin, std::chrono::steady_clock::now()));
            loop.turn();
        }
        std::printf("| ms | median | 95 %% | most |\n|---|---|---|---|\n");
        step.tell();
    }

    void many(int dictations)
    {
        std::printf("| dictations | memory, MB | threads | files | processor, s |\n|---|---|---|---|---|\n");
        for (int done = 0; done <= dictations; ++done) {
            if (done % std::max(1, dictations / 10) == 0) {
                const Usage usage(sorvane.process());
                std::printf("| %d | %.1f | %ld | %ld | %.1f |\n", done, double(usage.memory) / 1024, usage.threads,
                    usage.files, usage.processor);
                std::fflush(stdout);
            }
            dictate(shortRecording);
        }
    }

    void idle(int seconds)
    {
        const Usage before(sorvane.process());
        std::this_thread::sleep_for(std::chrono::seconds(seconds));
        const Usage after(sorvane.process());
        std::printf("%d s: %.2f s of processor, %ld wake-ups of %ld threads, memory %.1f MB, %+.1f MB\n", seconds,
            after.processor - before.processor, after.switches - before.switches, after.threads,
            double(after.memory) / 1024, double(after.memory - before.memory) / 1024);
    }

private:
    struct Times {
        Instant pressed, barShown, released, recognised, cleanupStarted, cleanupEnded, copied, typed;
    };

    void TestBody() override { }

    void note(const xcb_generic_event_t& event)
    {
        const auto type = event.response_type & 0x7f;
        if (type == XCB_MAP_NOTIFY)
            barShown_ = std::chrono::steady_clock::now();
        else if (type == XCB_UNMAP_NOTIFY)
            barShown_ = Instant::min();
        else if (type == firstExtensionEvent_ + XCB_XFIXES_SELECTION_NOTIFY)
            copied_ = std::chrono::steady_clock::now();
    }

    // For good: a confirmation may follow the bar.
    void untilBarIsGone()
    {
        do {
            loop.turnUntil([&] { return barShown_ == Instant::min(); });
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            loop.turn();
        } while (barShown_ != Instant::min());
    }

    // An event that is later than the instant.
    Instant after(const Instant& begin, const Instant& event)
    {
        loop.turnUntil([&] { return event > begin; });
        return event;
    }

    // The samples of a recording, in a file of nothing else.
    std::filesystem::path samplesOf(const std::string& recording)
    {
        const std::filesystem::path samples = folder_ / (recording + ".raw");
        if (std::filesystem::exists(samples))
            return samples;
        AudioIO::AudioFile file(SAMPLES_DIRECTORY "/" + recording);
        std::vector<float> frames;
        for (std::ofstream raw(samples, std::ios::binary); file.read(4096, frames) > 0;)
            raw.write(reinterpret_cast<const char*>(frames.data()), std::streamsize(frames.size() * sizeof(float)));
        rates_[recording] = file.sampleRate();
        return samples;
    }

    // Comes back when the last sample has been heard. The recordings have one channel.
    void play(const std::string& recording)
    {
        const auto mouth = PlatformSupport::environmentVariable("DESKTOP_SESSION_MOUTH").value_or("");
        const auto samples = samplesOf(recording);
        runProgram({ "paplay", "--raw", "--format=float32le", "--channels=1",
            "--rate=" + std::to_string(rates_.at(recording)), "--device=" + mouth, samples });
    }

    Times dictate(const std::string& recording)
    {
        Times times;
        form.ask("empty page");
        times.pressed = std::chrono::steady_clock::now();
        holdShortcut();
        times.barShown = after(times.pressed, barShown_);
        untilListening();
        play(recording);
        files_.forget();
        times.released = std::chrono::steady_clock::now();
        releaseShortcut();
        times.copied = after(times.released, copied_);
        while (form.ask("read page") == "[]")
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        times.typed = std::chrono::steady_clock::now();
        if (files_.toolEnded == Instant())
            throw std::runtime_error("the words were not tidied");
        times.recognised = files_.kept;
        times.cleanupStarted = files_.toolStarted;
        times.cleanupEnded = files_.toolEnded;
        untilBarIsGone();
        return times;
    }

    TemporaryFolder folder_;
    std::map<std::string, int> rates_; // of recordings, Hz
    FileEvents files_ { loop.executor(), models.transcripts(), models.cleanup() / "runtime" };
    int firstExtensionEvent_ = 0;
    Instant barShown_ = Instant::min();
    Instant copied_;
    DesktopLinux::XConnection::Subscription events_;
};

} // namespace

int main(int count, char** arguments)
{
    const std::string what = count > 1 ? arguments[1] : "";
    const auto number = [&](int usual) { return count > 2 ? std::atoi(arguments[2]) : usual; };
    DesktopDictations desktop;
    if (what == "latency")
        desktop.latency(number(20));
    else if (what == "capture")
        desktop.capture(number(200));
    else if (what == "many")
        desktop.many(number(200));
    else if (what == "idle")
        desktop.idle(number(600));
    else
        return std::fputs(
                   "DesktopDictations latency [ROUNDS] | capture [ROUNDS] | many [DICTATIONS] | idle [SECONDS]\n",
                   stderr),
               1;
    return 0;
}
