// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "PublishedModels.h"

#include <Sorvane/CleanupFiles.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace {

// A process that is ended in the midst of its work is nothing rare: computers are switched off. SORVANE_KILLS asks for
// more moments than a test run has time for, SORVANE_SEED for those of another run.
size_t setting(const char* name, size_t otherwise)
{
    const char* const text = std::getenv(name);
    return text ? std::stoul(text) : otherwise;
}

std::string contents(const fs::path& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// Looks whether anybody creates a file under one of these names, or writes to it, other than by giving the name to a
// finished file.
class NameWatch {
public:
    explicit NameWatch(const std::map<fs::path, fs::path>& published)
        : queue_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        for (const auto& [path, original] : published) {
            fs::create_directories(path.parent_path());
            const int folder
                = ::inotify_add_watch(queue_.number(), path.parent_path().c_str(), IN_CREATE | IN_MODIFY | IN_MOVED_TO);
            if (folder < 0)
                throw std::runtime_error("cannot watch " + path.parent_path().string());
            names_.insert({ folder, path.filename() });
        }
    }

    // The names that were written to since it was last asked.
    std::vector<std::string> violations()
    {
        std::vector<std::string> found;
        alignas(inotify_event) std::array<char, size_t { 64 } * 1024> events {};
        for (ssize_t size = read(events); size > 0; size = read(events))
            for (const char* next = events.data(); next < events.data() + size;) {
                const auto* const event = reinterpret_cast<const inotify_event*>(next);
                next += sizeof(inotify_event) + event->len;
                if ((event->mask & IN_Q_OVERFLOW) != 0)
                    throw std::runtime_error("more happened than was watched");
                moves_ += (event->mask & IN_MOVED_TO) != 0 ? names_.count({ event->wd, event->name }) : 0;
                if ((event->mask & IN_MOVED_TO) == 0 && names_.contains({ event->wd, event->name }))
                    found.emplace_back(event->name);
            }
        return found;
    }

    size_t moves() const { return moves_; }

private:
    ssize_t read(std::span<char> events) const { return ::read(queue_.number(), events.data(), events.size()); }

    PlatformSupport::FileDescriptor queue_;
    std::set<std::pair<int, std::string>> names_;
    size_t moves_ = 0;
};

class KilledPreparation : public testing::Test {
protected:
    // Every file that lies under its final name is whole and verified.
    void expectNothingUnverified() const
    {
        for (const auto& [path, original] : published)
            EXPECT_TRUE(!fs::exists(path) || contents(path) == contents(original)) << path;
    }

    void expectReady() const
    {
        for (const auto& [path, original] : published)
            EXPECT_TRUE(fs::exists(path)) << path;
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(models.cleanup()))
            names.insert(entry.path().filename());
        EXPECT_THAT(
            names, testing::UnorderedElementsAre("model.gguf", "runtime", "downloads", ".runtime-b10809-ready"));
        EXPECT_EQ(contents(models.cleanup() / ".runtime-b10809-ready"), "b10809\n");
        for (const char* const tool : { "llama-completion", "llama-tokenize" })
            EXPECT_TRUE(contents(models.cleanup() / "runtime" / tool) == contents(models.tools() / tool)) << tool;
        EXPECT_TRUE(fs::exists(models.speech() / ".trw-meta/manifest"));
        EXPECT_TRUE(unfinishedFiles().empty());
    }

    std::vector<std::string> unfinishedFiles() const
    {
        std::vector<std::string> found;
        for (const auto& folder : { models.cleanup(), models.speech() })
            for (const auto& entry : fs::recursive_directory_iterator(folder))
                if (entry.path().extension() == ".part" || entry.path().extension() == ".temporary")
                    found.push_back(entry.path());
        return found;
    }

    PublishedModels models;
    std::map<fs::path, fs::path> published = models.published();
};

} // namespace

TEST_F(KilledPreparation, EndsReadyWheneverItComesAndShowsNothingUnverified)
{
    const size_t moments = setting("SORVANE_KILLS", 20);
    std::mt19937 random(setting("SORVANE_SEED", 1));
    const auto whole = models.run({ PREPARE_MODELS_PROGRAM });
    ASSERT_EQ(whole.status, 0) << whole.output << whole.errors;
    std::uniform_int_distribution<size_t> byte(0, whole.output.size());
    std::uniform_int_distribution<int> milliseconds(0, 60);

    size_t kills = 0;
    size_t killsInCleanup = 0;
    for (size_t moment = 0; moment < moments; ++moment) {
        fs::remove_all(models.speech());
        fs::remove_all(models.cleanup());
        NameWatch watch(published);
        {
            // Somewhere between two lines of its output, or a moment after one.
            RunningProgram program({ PREPARE_MODELS_PROGRAM }, models.environment());
            for (size_t left = byte(random); left > 0 && program.hasWritten(); --left) { }
            const auto pause = std::chrono::milliseconds(milliseconds(random));
            program.hasWritten(pause);
            program.kill();
            const auto killed = program.finish();
            kills += killed.status == -1 ? 1 : 0;
            killsInCleanup += killed.status == -1 && killed.output.find("text cleanup") != std::string::npos ? 1 : 0;
        }
        EXPECT_EQ(watch.violations(), std::vector<std::string> {});
        expectNothingUnverified();

        const auto outcome = models.run({ PREPARE_MODELS_PROGRAM });
        EXPECT_EQ(outcome.status, 0) << outcome.output << outcome.errors;
        EXPECT_EQ(watch.violations(), std::vector<std::string> {});
        EXPECT_GE(watch.moves(), published.size());
        expectNothingUnverified();
        expectReady();
        if (HasFailure())
            FAIL() << "moment " << moment;
    }
    EXPECT_GT(kills, moments / 2); // the others were done before
    std::cout << kills << " of " << moments << " killed, " << killsInCleanup << " in the second stage\n";
}
