// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Opens a history of many transcripts, and saves into it; beside it what the disk alone takes for the bytes of a save.
//
// Usage: TimeHistory FOLDER [COUNT]; FOLDER must not exist, and is gone afterwards. COUNT is 100000 unless told.
#include <PlatformSupport/WholeFile.h>
#include <Sorvane/TranscriptHistory.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr size_t usualCount = 100'000;
constexpr size_t saves = 20;
constexpr size_t openings = 3;

// A minute between two transcripts, since the middle of 2025.
constexpr double firstDate = 770'000'000.25;

const std::string text = "Could you look at the second paragraph again? I think the numbers in it are from last year, "
                         "and the table on the next page says 3.5 million instead of 4.2 million.";

// By the clock on the wall, and by the processors' work: the second does not grow when others are busy.
struct Milliseconds {
    double wall = 0;
    double processor = 0;
};

Milliseconds millisecondsOf(const std::function<void()>& action)
{
    const auto start = std::chrono::steady_clock::now();
    const auto processorStart = std::clock();
    action();
    return { std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count(),
        static_cast<double>(std::clock() - processorStart) * 1e3 / CLOCKS_PER_SEC };
}

Milliseconds median(size_t times, const std::function<void()>& action)
{
    std::vector<Milliseconds> all(times);
    std::ranges::generate(all, [&] { return millisecondsOf(action); });
    const auto middle = [&](double Milliseconds::*time) {
        std::ranges::sort(all, {}, time);
        return all[times / 2].*time;
    };
    return { middle(&Milliseconds::wall), middle(&Milliseconds::processor) };
}

void print(const char* what, Milliseconds time)
{
    std::printf("%-24s %9.1f ms, %9.1f ms of the processors\n", what, time.wall, time.processor);
    std::fflush(stdout);
}

void makeFolder(const fs::path& folder, size_t count)
{
    fs::create_directories(folder);
    PlatformSupport::RandomUUIDs uuids;
    for (size_t i = 0; i < count; ++i) {
        const std::string id = uuids.next().text();
        std::ofstream(folder / (id + ".json"))
            << R"({"id":")" << id << R"(","text":")" << text << R"(","appName":"Editor","createdAt":)"
            << std::to_string(firstDate + 60 * static_cast<double>(i)) << R"(,"duration":12.6400625})";
    }
}

void saveOne(Sorvane::TranscriptHistory& history)
{
    history.save({ .text = text,
        .appName = "Editor",
        .bundleIdentifier = std::nullopt,
        .createdAt = std::chrono::system_clock::now(),
        .duration = 9.5,
        .harness = std::nullopt });
}

// As much writing as a save is, without a history.
void writeAsMuch(const fs::path& folder, const std::string& counters)
{
    PlatformSupport::replaceFile(folder / "entry", text, PlatformSupport::Durability::replacement);
    PlatformSupport::replaceFile(folder / "counters", counters, PlatformSupport::Durability::content);
}

void timeHistory(const fs::path& folder, size_t count)
{
    makeFolder(folder, count);
    PlatformSupport::RandomUUIDs uuids;
    const auto open = [&] { Sorvane::TranscriptHistory(folder, uuids); };
    print("opening, first time", millisecondsOf(open));
    print("opening, median", median(openings, open));

    Sorvane::TranscriptHistory history(folder, uuids);
    const auto save = median(saves, [&] { saveOne(history); });
    const std::string counters = PlatformSupport::readFile(folder / ".lifetime-statistics.json", SIZE_MAX - 1);
    const auto disk = median(saves, [&] { writeAsMuch(folder, counters); });
    print("a save, median", save);
    print("  as much writing alone", disk);
    std::printf(
        "  ratio %.2f; the counters take %.1f MB\n", save.wall / disk.wall, static_cast<double>(counters.size()) / 1e6);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3 || fs::exists(argv[1])) {
        std::fprintf(stderr, "Usage: TimeHistory FOLDER [COUNT]; FOLDER must not exist\n");
        return 2;
    }
    timeHistory(argv[1], argc == 3 ? std::stoul(argv[2]) : usualCount);
    fs::remove_all(argv[1]);
}
